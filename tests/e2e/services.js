// ISService from JScript: null and undefined as the service sees them, and JScript objects, whose
// names Wine resolves through IDispatchEx, as a control, the data-access object and a tree view.
var svc = new ActiveXObject("Celdo.ISService");
checkEqual(svc.nvl(null, 5), 5, "nvl: null is Null");
checkEqual(svc.nvl(undefined, 5), undefined, "undefined is Empty, a value");
checkEqual(svc.IsControl({Name: "t", Parent: null}), false, "a JScript object has no control's type name");

// JScript has no Set statement: a plain assignment hands Ex its object.
svc.Ex = {FormatShowDate: "d/m/yy", Evaluador: {ReplaceString: function (s, a, b) { return s.split(a).join(b); }}};
checkEqual(svc.CustomFormat, "d/M/yy", "CustomFormat through a JScript evaluator");

// The node Nodes.Add answers comes back as itself, tagged.
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
