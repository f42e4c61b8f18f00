// The text forms under JScript, which passes every argument as a copy: LoadElement's result is
// how a JScript host walks a document, since its position argument is never written back.
var row = new ActiveXObject("Celdo.clsCeldos");
row.Add("Codigo", "", exLong, 0, -1, true, "", "", 12);
row.Add("Nombre", "", exText, 0, -1, false, "", "", "Año <1>");
var xml = row.XML("UTF-8");
checkEqual(xml, "<Codigo>12</Codigo>\r\n<Nombre>A&ntilde;o &lt;1&gt;</Nombre>\r\n", "XML of a row");

var f = new ActiveXObject("Celdo.clsCeldo");
var names = [];
var position = 0;
while (position < xml.length) {
    var next = f.LoadElement("UTF-8", position, xml);
    check(next > position, "each element moves the position on");
    position = next;
    names.push(f.Name + "=" + f.Value);
}
checkEqual(names.join(";"), "Codigo=12;Nombre=Año <1>", "every element read, values as text");

var copy = new ActiveXObject("Celdo.clsCeldos");
checkEqual(copy.Parse("ISO-8859-1", row.XMLAttribute("ISO-8859-1")), true, "Parse");
checkEqual(copy.Item("Nombre").Value, "Año <1>", "Parse restores the value");
checkEqual(row.ClipNames(), "Codigo,Nombre", "ClipNames with its arguments left out");
checkEqual(row.ClipHeader, "Codigo\tNombre", "ClipHeader");
checkThrows(function () { f.LoadElement("", 0, "<a><b>x</a>"); }, -2147221504, "Badly nested tags", "a nesting error");
checkThrows(function () { new ActiveXObject("Celdo.clsCeldos").ClipHeader; }, 5, "", "the header of no fields");
finish();
