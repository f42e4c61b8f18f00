' Rows from VBScript: the audit fields shared into a row, a script's row taken by reference, the
' required check's message written back, ranges and records sharing their objects, For Each over
' records and a key's error. The rules have native tests (tests/collections).
Dim row, other, audit, reg, r, msg, s, x
Set row = CreateObject("Celdo.clsCeldos")
row.Add "Codigo", "", exLong, , , True
row.Add "Nombre", "", exText, , , True
Set audit = CreateObject("Celdo.CeldosSeguimiento")
row.Appends audit.Registro()
Check row.Item("NFecha") Is audit.NFecha, "the audit fields are shared into the row"
Set r = audit.Registro()
Check Not (r Is audit.Registro()), "Registro makes a new collection each time"
Check r.Item("UFecha") Is audit.Registro().Item("UFecha"), "of the same fields"

Set other = CreateObject("Celdo.clsCeldos")
other.Add "A", "", exText, , , , , , "12"
row.Assing other
CheckEqual row.Item("Codigo").Value, CLng(12), "Assing takes a script's row, by position"
msg = ""
CheckEqual row.ValidateRequired(msg, exInsert), False, "insert mode checks every field"
Check InStr(msg, "El campo Nombre no puede contener un valor nulo.") = 1, "the message written back: " & msg

Set r = row.Range("Nombre, Codigo")
Check r.Item(1) Is row.Item("Nombre") And r.Item(2) Is row.Item("Codigo"), "Range shares the fields in the list's order"

Set reg = CreateObject("Celdo.clsRegistro")
reg.AppendAs row, "copia"
reg.Add row, "misma"
Check reg("MISMA") Is row And reg(2) Is row, "Add shares the row, found by key and by position"
s = ""
For Each x In reg
    s = s & (x Is row) & ";"
Next
CheckEqual s, False & ";" & True & ";", "For Each over the rows: AppendAs's copy, then the row"
On Error Resume Next
reg.Add row, "misma"
CheckError 457, "", "", "a key in use"
On Error GoTo 0
reg.Clear
Finish
