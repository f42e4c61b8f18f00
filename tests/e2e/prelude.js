// Checks shared by every JScript test; the harness puts this file before the test itself.
// A test ends by calling finish(), which prints the line the harness looks for.
var checksRun = 0, checksFailed = 0;

function failed(name, detail) {
    checksFailed++;
    WScript.Echo("FAILED " + name + ": " + detail);
}

function check(condition, name) {
    checksRun++;
    if (!condition) failed(name, "condition is false");
}

function checkEqual(actual, expected, name) {
    checksRun++;
    if (typeof actual !== typeof expected || actual !== expected)
        failed(name, "got [" + actual + "] (" + typeof actual + "), expected [" + expected + "] (" + typeof expected + ")");
}

// Runs body and checks the automation error it raised (its number is the low word).
function checkThrows(body, number, description, name) {
    checksRun++;
    try {
        body();
    } catch (e) {
        var got = e.number & 0xFFFF;
        if (number > 0xFFFF || number < 0) got = e.number;
        if (got !== number) failed(name, "error " + e.number + " (" + e.description + "), expected " + number);
        else if (description !== "" && e.description !== description)
            failed(name, "description [" + e.description + "], expected [" + description + "]");
        return;
    }
    failed(name, "no error");
}

function finish() {
    if (checksFailed === 0) WScript.Echo("PASSED " + checksRun + " checks");
    else WScript.Echo("FAILED " + checksFailed + " of " + checksRun + " checks");
}
