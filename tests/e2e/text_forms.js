// The text forms under JScript, which passes every argument as a copy: LoadElement's result is
// how a JScript host walks a document, since its position argument is never written back.
var row = new ActiveXObject("Celdo.clsCeldos");
row.Add("Codigo", "", exLong, 0, -1, true, "", "", 12);
row.Add("Nombre", "", exText, 0, -1, false, "", "", "Año <1>");
var xml = row.XML("UTF-8");
var f = new ActiveXObject("Celdo.clsCeldo");
var names = [];
var position = 0;
while (position < xml.length) {
    var next = f.LoadElement("UTF-8", position, xml);
    check(next > position, "each element moves the position on");
    if (next <= position) break;
    position = next;
    names.push(f.Name + "=" + f.Value);
}
checkEqual(names.join(";"), "Codigo=12;Nombre=Año <1>", "every element read, values as text");
finish();
