' The member machinery as VBScript meets it, on the test probe: subtypes across a Variant, Set on
' the default member, omitted arguments, by-reference write-back, arrays, indexed properties and
' errors as the script sees them. The rules have native tests (automation/dispatch_test.cpp); the
' real classes show the rest (fields.vbs, services.vbs, paging.vbs).
Dim p, q, s, n, grid
Set p = CreateObject("CeldoProbe.Probe")
Set q = CreateObject("CeldoProbe.Probe")

' Integer, Long, Currency, Null, Empty, Date.
CheckEqual VarType(p.Echo(1)) & VarType(p.Echo(100000)) & VarType(p.Echo(CCur(1))) & VarType(p.Echo(Null)) & _
    VarType(p.Echo(Empty)) & VarType(p.Echo(Now)), "236107", "a script's subtypes survive a Variant parameter"

' (Assigning to the object variable itself reaches the default member on Windows; Wine's
' VBScript replaces the variable.)
Set p.Value = q
Check p.Value Is q, "Set on the default member stores the object"
CheckEqual p.Describe(7, , "x"), "Size=7;Position=-1;Label=x;Extra=Missing;Mode=2;Flag=True", "arguments left out, one in the middle"

s = "  padded  ": n = "41"
p.Tidy s: p.Bump n
CheckEqual s & n & " " & VarType(n), "padded42 " & vbLong, "a String and a Long by reference come back, typed as declared"
s = "  kept  "
p.Tidy (s)
CheckEqual s, "  kept  ", "parentheses pass a copy"

grid = p.Grid(3, 2)
CheckEqual UBound(grid, 1) & "," & UBound(grid, 2) & " " & grid(2, 1), "2,1 21", "an array comes as columns by rows"
p.Cell(1, 2) = "x"
CheckEqual p.Cell(1, 2) & "|" & p.Cell(2, 1), "x|", "an indexed property takes its indexes in order"

On Error Resume Next
p.Raise -2147221504, "Celdo_Codigo", "Tipo de dato no válido"
CheckError -2147221504, "Celdo_Codigo", "Tipo de dato no válido", "an object error with its source and accents"
p.Small = 40000
CheckError 6, "", "Overflow", "overflow on a typed property"
p.Nonexistent = 1
CheckError 438, "", "", "an unknown member"
' The other DLL's object: the probe, a second copy of the library, must not take it for its own.
Set p.Partner = CreateObject("Celdo.Constants")
CheckError 13, "", "", "an object of another class"
On Error GoTo 0
p.Value = Empty: Set p.Partner = Nothing
Finish
