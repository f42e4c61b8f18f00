// Fields and rows under JScript, which passes every argument as a copy: a message is never
// written back, yet the answer still tells. Also an argument left out, and an error's accented
// text in the exception.
var f = new ActiveXObject("Celdo.clsCeldo");
f.Name = "lngCantidad";
f.Value = "mil";
f.DataType = exLong;
checkEqual(f.Validate(), false, "Validate with its argument left out judges the stored text as a Long");
checkEqual(f.Validate(5), true, "and one given instead of it");
checkThrows(function () { f.Conjunction = "XOR"; }, -2147221504, "Conjunción no valida Cantidad", "conjunction refused");

var row = new ActiveXObject("Celdo.clsCeldos");
var name = row.Add("Nombre", "", exText, 50, -1, true);
var msg = "";
checkEqual(row.ValidateRequired(msg, exInsert), false, "an empty required text fails in insert mode");
checkEqual(msg, "", "the script's own string is left as it was");
name.Value = "Ana";
checkEqual(row.ValidateRequired(msg, exInsert), true, "and passes once it holds a value");
finish();
