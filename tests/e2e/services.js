// ISService from JScript: null and undefined as the helpers see them, a JScript object as the
// data-access object, and the refusal of a member not built yet.
var svc = new ActiveXObject("Celdo.ISService");
checkEqual(svc.nvl(null, 5), 5, "nvl: null is Null");
checkEqual(svc.nvl(undefined, 5), undefined, "undefined is Empty, a value");
checkEqual(svc.MoveSpin(9, 10, 1, 2), 10, "MoveSpin");
checkEqual(svc.BuildFormat(3.5, "0.00"), "3.50", "BuildFormat");
checkEqual(svc.IsControl({Name: "t", Parent: null}), false, "a JScript object has no control's type name");

// JScript has no Set statement: a plain assignment hands Ex its object.
var da = {HayConexion: false, FormatShowDate: "d/m/yy", Calls: 0,
          Evaluador: {ReplaceString: function (s, a, b) { return s.split(a).join(b); }},
          ExecFillArray: function () { this.Calls++; }};
svc.Ex = da;
checkEqual(svc.CustomFormat, "d/M/yy", "CustomFormat through a JScript evaluator");
var list = {ListItems: null};
svc.ExecFillListView(list, 0, "Select", exOpenStatic);
checkEqual(da.Calls, 0, "without a connection nothing is fetched");

checkThrows(function () { svc.FillTreeView(list, null); }, 445, "", "a member not built yet");
try {
    svc.FillTreeView(list, null);
} catch (e) {
    check(e.description.indexOf("ISService.FillTreeView is not available yet") >= 0, "says so");
}
svc = null;
finish();
