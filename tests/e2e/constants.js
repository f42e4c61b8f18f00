// Celdo.Constants under JScript.
var constants = new ActiveXObject("Celdo.Constants");
check(typeof constants === "object", "ActiveXObject gives an object");
check(constants !== new ActiveXObject("Celdo.Constants"), "each creation makes a new object");
// Windows' JScript raises "Object doesn't support this property"; Wine's reads undefined.
var threw = false, value;
try { value = constants.Value; } catch (e) { threw = (e.number & 0xFFFF) === 438; }
check(threw || value === undefined, "Constants has no members");
checkEqual(exInsert, 5380, "exInsert");
checkEqual(SSaCFind, 7, "irregular case is kept");
finish();
