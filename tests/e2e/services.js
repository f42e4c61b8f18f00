// ISService from JScript: null and undefined as the helpers see them, a JScript object as the
// data-access object, and a tree view of JScript objects.
var svc = new ActiveXObject("Celdo.ISService");
checkEqual(svc.nvl(null, 5), 5, "nvl: null is Null");
checkEqual(svc.nvl(undefined, 5), undefined, "undefined is Empty, a value");
checkEqual(svc.MoveSpin(9, 10, 1, 2), 10, "MoveSpin");
checkEqual(svc.BuildFormat(3.5, "0.00"), "3.50", "BuildFormat");
checkEqual(svc.IsControl({Name: "t", Parent: null}), false, "a JScript object has no control's type name");

// JScript has no Set statement: a plain assignment hands Ex its object.
var da = {HayConexion: false, FormatShowDate: "d/m/yy", Calls: 0,
          Evaluador: {ReplaceString: function (s, a, b) { return s.split(a).join(b); }},
          ExecFillArray: function () { this.Calls++; }};
svc.Ex = da;
checkEqual(svc.CustomFormat, "d/M/yy", "CustomFormat through a JScript evaluator");
var list = {ListItems: null};
svc.ExecFillListView(list, 0, "Select", exOpenStatic);
checkEqual(da.Calls, 0, "without a connection nothing is fetched");

// A tree view of JScript objects: the node Nodes.Add answers comes back as itself, tagged.
var added = [];
var tree = {Nodes: {Add: function (relative, relationship, key, text) {
    var node = {Key: key, Text: text, Tag: null};
    added.push(node);
    return node;
}}};
var node = svc.AddRootNode(tree, "7", "Siete", 1, -1, "t");
check(node === added[0], "AddRootNode answers the node the tree added");
checkEqual(node.Key + " " + node.Text + " " + node.Tag, "K7 Siete t", "keyed by the K rule and tagged");
svc = null;
finish();
