// Rows under JScript, which never writes a by-reference argument back: the required check
// still answers, ranges and record collections keep object identity, errors reach catch.
var row = new ActiveXObject("Celdo.clsCeldos");
var code = row.Add("Codigo", "CLI_CODIGO", exLong, 0, -1, true);
var name = row.Add("Nombre", "CLI_NOMBRE", exText, 50, -1, true);
row.Add("Total", "CLI_TOTAL", exCurrency);

// The message text is the script's own string; the answer still tells whether it ended empty.
checkEqual(row.ValidateRequired("", exInsert), false, "an empty required text fails in insert mode");
name.Value = "Ana";
checkEqual(row.ValidateRequired("", exInsert), true, "and passes once it holds a value");
checkEqual(row.ValidateRequired("pendiente", exInsert), false, "an incoming message makes the answer False");

var range = row.Range("Nombre, \"Codigo\", Nada");
checkEqual(range.Count, 2, "Range keeps the named fields that exist");
check(range.Item(1) === name && range.Item(2) === code, "in the list's order, the same objects");
var copies = row.RangeExAs("Total");
copies.Item("Nombre").Value = "Otra";
checkEqual(name.Value, "Ana", "RangeExAs copies: the row is untouched");

var records = new ActiveXObject("Celdo.clsRegistro");
records.Add(row, "r1");
records.AppendAs(row, "r2");
check(records.Item("R1") === row, "Add stores the row itself, keys without case");
check(records.Item(2) !== row, "AppendAs stores a copy");
checkThrows(function () { records.Add(row, "r1"); }, 457, "", "a key in use is error 457");
checkThrows(function () { return records.Item("r3"); }, 5, "", "a missing key is error 5");
checkEqual(records.Exist("r3"), false, "Exist never raises");

var audit = new ActiveXObject("Celdo.CeldosSeguimiento");
var first = audit.Registro(), second = audit.Registro();
check(first !== second, "every Registro is a new collection");
check(first.Item("NFecha") === second.Item("NFecha") && first.Item("NFecha") === audit.NFecha,
      "of the same four fields");
row.Appends(first);
var typed = row.RangeAs("Codigo,Nombre,Total,NProfile");
typed.Item("Nombre").Value = "Otra";
typed.Item("NProfile").Value = "pepe";
row.Assing(typed);
checkEqual(name.Value, "Otra", "Assing copies by position");
check(audit.NProfile.Value === undefined, "and leaves the audit fields alone");
finish();
