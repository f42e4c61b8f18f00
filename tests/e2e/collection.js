// clsCeldos under JScript: the default member called as a function, the Enumerator object, and
// a missing key as an exception.
// wine-run: the host keeps objects (Wine's JScript Enumerator never releases the collection it walks).
var row = new ActiveXObject("Celdo.clsCeldos");
var f = row.Add("Codigo", "COD", exLong);
row.Add("Nombre", "NOM", exText);
check(row("codigo") === f, "the default member called with a key");
var names = "";
for (var e = new Enumerator(row); !e.atEnd(); e.moveNext()) names += e.item().Name + ";";
checkEqual(names, "Codigo;Nombre;", "Enumerator walks the fields");
checkThrows(function () { return row("nada"); }, 5, "", "a missing key");
finish();
