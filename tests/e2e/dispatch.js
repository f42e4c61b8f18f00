// The member machinery as JScript meets it: properties read as methods, object assignment with
// Let and Set together, optional arguments, the Enumerator object, errors.
// wine-run: the host keeps objects (Wine's JScript Enumerator never releases the collection it walks).
var p = new ActiveXObject("CeldoProbe.Probe");
var q = new ActiveXObject("CeldoProbe.Probe");

p.Text = 12.5;
checkEqual(p.Text, "12.5", "a number assigned to a String property");
p.Number = "41";
checkEqual(p.Number, 41, "numeric text assigned to a Long property");
p.Mode = pmThird;
checkEqual(p.Mode, 30, "enumerations from the type library");

checkEqual(p.Describe(), "Size=0;Position=-1;Label=!;Extra=Missing;Mode=2;Flag=True", "optional arguments left out");
checkEqual(p.Describe(7), "Size=7;Position=-1;Label=!;Extra=Missing;Mode=2;Flag=True", "trailing arguments left out");

// Objects assigned to a property with Set go in as objects.
p.Partner = q;
check(p.Partner === q, "an object property gives back the same object");
p.Value = q;
check(p.Value === q, "an object assigned to the default member");
p.Value = "text";
checkEqual(p.Value, "text", "a value assigned to the default member");
check(p.Itself() === p, "identity through a function");

p.Add("a");
p.Add(2);
var seen = "";
for (var e = new Enumerator(p); !e.atEnd(); e.moveNext()) seen += e.item() + ";";
checkEqual(seen, "a;2;", "Enumerator walks the items");

var grid = new VBArray(p.Grid(3, 2));
checkEqual(grid.dimensions(), 2, "a two-dimensional array");
checkEqual(grid.ubound(1), 2, "columns");
checkEqual(grid.getItem(2, 1), 21, "cell (2, 1)");

checkThrows(function () { p.Raise(-2147221504, "Celdo_Codigo", "Tipo de dato no válido"); },
            -2147221504, "Tipo de dato no válido", "an object error with its description");
checkThrows(function () { p.Small = 40000; }, 6, "", "overflow");
checkThrows(function () { p.Number = "many"; }, 13, "", "type mismatch");
checkThrows(function () { p.Echo(); }, 449, "", "a required argument left out");

p.Value = 0;
p.Partner = null;
finish();
