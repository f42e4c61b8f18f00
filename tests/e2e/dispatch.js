// The member machinery as JScript meets it, where it differs from VBScript: objects assigned
// with Let and Set together, every argument passed as a copy, trailing arguments left out,
// VBArray, errors as exceptions, and a JScript object's missing property, which Wine looks up
// through IDispatchEx.
var p = new ActiveXObject("CeldoProbe.Probe");
var q = new ActiveXObject("CeldoProbe.Probe");

// JScript has no Set statement: an object assigned to a property goes in as the object.
p.Partner = q;
p.Value = q;
check(p.Partner === q && p.Value === q && p.Itself() === p, "objects assigned and given back as themselves");
p.Value = "text";
checkEqual(p.Value, "text", "a value assigned to the default member");
var s = "  padded  ";
p.Tidy(s);
checkEqual(s, "  padded  ", "a by-reference parameter leaves the script's string as it was");
checkEqual(p.Describe(7), "Size=7;Position=-1;Label=!;Extra=Missing;Mode=2;Flag=True", "trailing arguments left out");
var grid = new VBArray(p.Grid(3, 2));
checkEqual(grid.dimensions() + "," + grid.ubound(1) + " " + grid.getItem(2, 1), "2,2 21", "a two-dimensional array");
checkThrows(function () { p.Small = 40000; }, 6, "", "a language error's number in the low word");

// (services.js has the library call a JScript object's function and write its property.)
checkThrows(function () { p.Read({}, "absent"); }, 438, "", "a property a JScript object lacks");
p.Value = 0;
p.Partner = null;
finish();
