' The member machinery as VBScript meets it, on the test probe: typed properties, the default
' member, optional arguments, by-reference write-back into script variables, errors, For Each,
' identity, arrays and enumerations from the type library.
Dim p, q, v, s, n, item, seen, grid
Set p = CreateObject("CeldoProbe.Probe")

' Typed properties coerce and keep their subtype.
p.Text = 12.5
CheckEqual p.Text, "12.5", "a Double assigned to a String property"
p.Number = "41"
CheckEqual p.Number, CLng(41), "numeric text assigned to a Long property"
p.Small = 2.5
CheckEqual p.Small, CInt(2), "Integer rounds half to even"
p.Flag = "True"
CheckEqual p.Flag, True, "text assigned to a Boolean property"
p.Amount = "1,234.5678"
CheckEqual p.Amount, CCur("1234.5678"), "Currency keeps four decimals"
p.When = "2024-05-17"
CheckEqual p.When, DateSerial(2024, 5, 17), "ISO text assigned to a Date property"
p.Mode = pmThird
CheckEqual p.Mode, CLng(30), "enumerations travel as Long"

' The default member is read without its name. (Assigning to the object variable itself
' reaches it on Windows, but Wine's VBScript replaces the variable.)
p.Value = "by default"
v = p
CheckEqual v, "by default", "reading the object reads Value"
Set q = CreateObject("CeldoProbe.Probe")
Set p.Value = q
Check p.Value Is q, "Set on the default member stores the object"
p.Value = Empty

' Optional arguments: left out, skipped in the middle, given.
CheckEqual p.Describe(), "Size=0;Position=-1;Label=!;Extra=Missing;Mode=2;Flag=True", "all optional arguments left out"
CheckEqual p.Describe(7, , "x"), "Size=7;Position=-1;Label=x;Extra=Missing;Mode=2;Flag=True", "an argument skipped in the middle"
CheckEqual p.Describe(1, 2, "y", "z", pmThird, False), "Size=1;Position=2;Label=y;Extra=z;Mode=30;Flag=False", "all given"

' By-reference arguments are written back into the script's variables.
s = "  padded  "
p.Tidy s
CheckEqual s, "padded", "a String by reference comes back trimmed"
n = "41"
p.Bump n
CheckEqual n, CLng(42), "a Long by reference comes back incremented, as a Long"
v = 1
s = "two"
p.Swap v, s
CheckEqual v, "two", "Swap: first"
CheckEqual s, 1, "Swap: second"
s = "  kept  "
p.Tidy (s)
CheckEqual s, "  kept  ", "parentheses pass a copy"
q.Text = "old"
Set v = q
p.Renew v
Check Not (v Is q), "an object by reference can be replaced"
CheckEqual v.Text, "renewed old", "the replacement"

' Identity: the same object reached twice is the same object.
Check p.Itself Is p, "a function returning the object gives the object"
Set p.Partner = q
Check p.Partner Is q, "an object property gives back the same object"
Check p.Partner Is p.Partner, "twice the same"

' Subtypes survive a round trip through a Variant parameter.
CheckEqual VarType(p.Echo(1)), vbInteger, "Integer"
CheckEqual VarType(p.Echo(100000)), vbLong, "Long"
CheckEqual VarType(p.Echo(CCur(1))), vbCurrency, "Currency"
CheckEqual VarType(p.Echo(Null)), vbNull, "Null"
CheckEqual VarType(p.Echo(Empty)), vbEmpty, "Empty"
CheckEqual VarType(p.Echo(Now)), vbDate, "Date"

' Arrays: columns by rows, as data arrays are.
grid = p.Grid(3, 2)
CheckEqual UBound(grid, 1), CLng(2), "first dimension is the columns"
CheckEqual UBound(grid, 2), CLng(1), "second dimension is the rows"
CheckEqual grid(2, 1), CLng(21), "cell (2, 1)"
ReDim grid(2, 1)
grid(0, 0) = "first"
grid(2, 1) = "last"
CheckEqual p.Shape(grid), "0..2,0..1 first=first last=last", "a script array arrives with its shape"

' Indexed properties.
p.Cell(1, 2) = "x"
CheckEqual p.Cell(1, 2), "x", "indexed property"

' For Each walks the enumerator.
p.Add "a"
p.Add 2
seen = ""
For Each item In p
    seen = seen & item & ";"
Next
CheckEqual seen, "a;2;", "For Each"

' Errors keep number, source and description.
On Error Resume Next
p.Raise -2147221504, "Celdo_Codigo", "Tipo de dato no válido"
CheckError -2147221504, "Celdo_Codigo", "Tipo de dato no válido", "an object error with its source and accents"
p.Raise 5, "Celdo", "Invalid procedure call or argument"
CheckError 5, "Celdo", "Invalid procedure call or argument", "a standard error number"
p.Small = 40000
CheckError 6, "", "", "overflow on a typed property"
p.Number = "many"
CheckError 13, "", "", "type mismatch on a typed property"
v = p.Echo()
CheckError 449, "", "", "a required argument left out"
p.Nonexistent = 1
CheckError 438, "", "", "an unknown member"
Set p.Partner = CreateObject("Celdo.Constants")
CheckError 13, "", "", "an object of another class"
On Error GoTo 0
CheckEqual p.Small, CInt(2), "a refused value leaves the old one"

p.Value = Empty
Set p.Partner = Nothing
Finish
