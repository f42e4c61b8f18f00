// The library calling back into JScript objects, whose names Wine resolves through IDispatchEx.
var p = new ActiveXObject("CeldoProbe.Probe");
var host = { total: 5, twice: function (n) { return n * 2; } };
checkEqual(p.Call(host, "twice", 21), 42, "a JScript function called by name");
checkEqual(p.Read(host, "total"), 5, "a JScript property read by name");
p.Write(host, "total", 9);
checkEqual(host.total, 9, "a JScript property written by name");
checkThrows(function () { p.Read(host, "absent"); }, 438, "", "a property the object lacks");
finish();
