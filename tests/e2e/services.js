// ISService from JScript, whose objects Wine reaches through IDispatchEx: undefined as Empty, a
// JScript object that is no control, and a tree view whose Nodes.Add answers a node that comes
// back as itself, keyed and tagged.
var svc = new ActiveXObject("Celdo.ISService");
checkEqual(svc.nvl(undefined, 5), undefined, "undefined is Empty, a value");
checkEqual(svc.IsControl({Name: "t", Parent: null}), false, "a JScript object has no control's type name");
var added = [];
var tree = {Nodes: {Add: function (relative, relationship, key, text) {
    added.push({Key: key, Text: text, Tag: null});
    return added[0];
}}};
var node = svc.AddRootNode(tree, "7", "Siete", 1, -1, "t");
check(node === added[0] && node.Key + " " + node.Text + " " + node.Tag === "K7 Siete t", "AddRootNode answers the node the tree added");
svc = null;
finish();
