// Checks shared by every JScript test; the harness puts this file before the test itself.
// A test ends by calling finish(), which prints the line the harness looks for.
var checksRun = 0, checksFailed = 0;

function failed(name, detail) {
    checksFailed++;
    WScript.Echo("FAILED " + name + ": " + detail);
}

function checkEqual(actual, expected, name) {
    checksRun++;
    if (typeof actual !== typeof expected || actual !== expected)
        failed(name, "got [" + actual + "] (" + typeof actual + "), expected [" + expected + "] (" + typeof expected + ")");
}

function check(condition, name) { checkEqual(!!condition, true, name); }

// Runs body and checks the automation error it raised: its number (the low word of a language
// error's) and, unless empty, its description.
function checkThrows(body, number, description, name) {
    checksRun++;
    try {
        body();
    } catch (e) {
        var got = number > 0xFFFF || number < 0 ? e.number : e.number & 0xFFFF;
        if (got !== number || (description !== "" && e.description !== description))
            failed(name, "error " + e.number + " (" + e.description + "), expected " + number + " (" + description + ")");
        return;
    }
    failed(name, "no error");
}

function finish() {
    if (checksFailed === 0) WScript.Echo("PASSED " + checksRun + " checks");
    else failed("", checksFailed + " of " + checksRun + " checks");
}
