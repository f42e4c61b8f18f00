// clsCeldo under JScript: properties read and written, optional arguments left out, values
// coerced, errors with their texts; a message passed from JScript is a copy, never written back.
var f = new ActiveXObject("Celdo.clsCeldo");
f.Name = "lngCantidad";
f.DataType = exLong;
checkEqual(f.Caption, "Cantidad", "caption from the name");
checkEqual(f.Size, 15, "size by type");
f.Value = "1,234";
checkEqual(f.Value, 1234, "numeric text coerced to Long");
checkEqual(f.Validate(), true, "Validate with its argument left out");
checkEqual(f.Validate("mil"), false, "a word is no Long");
checkThrows(function () { f.Value = "mil"; }, -2147221504, "Tipo de dato no valido para : Cantidad", "refused");
checkEqual(f.Value, 1234, "nothing stored");
f.Required = true;
var msg = "previo";
checkEqual(f.ValidateRequired(msg), false, "a collected message makes the answer False");
checkEqual(msg, "previo", "JScript passes a copy");
checkEqual(f.Redondear(1250.0, -2), 1200, "Redondear to hundreds, ties to even");
f.Operator = "between";
checkEqual(f.Operator, "BETWEEN", "operator upper-cased");
checkThrows(function () { f.Conjunction = "XOR"; }, -2147221504, "Conjunción no valida Cantidad", "conjunction refused");
finish();
