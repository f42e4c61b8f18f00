' Rows at work from VBScript: state operations over a row, Assing by position with the audit
' fields kept, Update by name, ValidateRequired's edit modes and its by-reference message,
' ranges (shared or copied), clsRegistro's keys and copies, and CeldosSeguimiento.
Dim row, other, audit, reg, r, f, msg, s, x, one, two

Set row = CreateObject("Celdo.clsCeldos")
row.Add "Codigo", "COD", exLong, , , True
row.Add "Nombre", "NOM", exText, , , True
row.Add "Saldo", "SAL", exCurrency
Set audit = CreateObject("Celdo.CeldosSeguimiento")
row.Appends audit.Registro()
CheckEqual row.Count, CLng(7), "a row with the audit fields"
Check row.Item("NFecha") Is audit.NFecha, "the audit fields are shared"

' Assing goes by position; the audit fields keep their values.
audit.NProfile.Value = "ana"
Set other = CreateObject("Celdo.clsCeldos")
other.Add "A", "", exText, , , , , , "12"
other.Add "B", "", exText, , , , , , "Peña"
other.Add "C", "", exText, , , , , , "$1,234.50"
other.Add "D", "", exText, , , , , , "pisado"
row.Assing other
CheckEqual row.Item("Codigo").Value, CLng(12), "Assing converts to the field's type"
CheckEqual row.Item("Nombre").Value, "Peña", "by position"
CheckEqual row.Item("Saldo").Value, CCur("1234.5"), "a currency text"
CheckEqual audit.NProfile.Value, "ana", "the audit field is not overwritten"

' Update goes by name through a property.
Set other = CreateObject("Celdo.clsCeldos")
other.Add "NOMBRE", "", exText, , , , , , "Núñez"
other.Add "Ajeno", "", exText, , , , , , "x"
row.Update other, "Value"
CheckEqual row.Item("Nombre").Value, "Núñez", "Update by name"
row.Update other, "Caption"
CheckEqual row.Item("Nombre").Value, "NOMBRE", "Update through another property"

' Required fields before a save.
row.Initialize
msg = ""
CheckEqual row.ValidateRequired(msg), True, "update mode: nothing changed, nothing checked"
CheckEqual msg, "", "no message"
CheckEqual row.ValidateRequired(msg, exInsert), False, "insert mode checks every field"
CheckEqual msg, "El campo Nombre no puede contener un valor nulo. Escriba un valor en este campo." & vbCrLf & _
    "El campo NProfile no puede contener un valor nulo. Escriba un valor en este campo." & vbCrLf & _
    "El campo UProfile no puede contener un valor nulo. Escriba un valor en este campo." & vbCrLf, _
    "the Spanish messages come back through the by-reference argument (an empty number passes)"

row.Item("Nombre").Value = "Ana"
row.Item("Nombre").Value = "Eva"
row.CancelUpdate
CheckEqual row.Item("Nombre").Value, "Ana", "CancelUpdate restores the old value"
row.ChangeOperator exFind
CheckEqual row.Item("Nombre").Operator, "LIKE", "a search compares text with LIKE"
row.ChangeOperator exLoad
CheckEqual row.Item("Nombre").Operator, "=", "a load compares with ="
row.Direction = exParamInput
CheckEqual row.Item("Saldo").Direction, CLng(exParamInput), "Direction reaches every field"

' Ranges.
Set r = row.Range("Nombre, ""Codigo"",, Ausente")
CheckEqual r.Count, CLng(2), "Range of the named fields"
Check r.Item(1) Is row.Item("Nombre"), "in the list's order, shared"
Set r = row.RangeEx("NProfile,UProfile,NFecha,UFecha")
CheckEqual r.ClipNames(), "Codigo,Nombre,Saldo", "RangeEx leaves the audit fields out"
Set r = row.RangeAs("Nombre")
r.Item(1).Value = "copia"
CheckEqual row.Item("Nombre").Value, "Ana", "RangeAs copies"

' clsRegistro: shared rows, copies, keys.
Set reg = CreateObject("Celdo.clsRegistro")
reg.AppendAs row, "copia"
reg.Add row, "misma"
row.Item("Nombre").Value = "Luis"
CheckEqual reg.Item("copia").Item("Nombre").Value, "Ana", "AppendAs keeps a copy"
Check reg.Item("MISMA") Is row, "Add shares the row"
Check reg(2) Is row, "the default member by position"
On Error Resume Next
reg.Add row, "misma"
CheckError 457, "", "", "a key in use"
Set x = reg.Item("nada")
CheckError 5, "", "", "a missing key"
On Error GoTo 0
CheckEqual reg.Count, CLng(2), "nothing added by the failed call"
s = ""
For Each x In reg
    s = s & x.Item("Nombre").Value & ";"
Next
CheckEqual s, "Ana;Luis;", "For Each over the rows"
CheckEqual reg.Exist("COPIA"), True, "Exist ignores case"
reg.Remove "copia"
reg.Clear
CheckEqual reg.Count, CLng(0), "Clear"

' CeldosSeguimiento hands out the same four objects in every new collection.
Set one = audit.Registro()
Set two = audit.Registro()
Check Not (one Is two), "a new collection each time"
Check one.Item("UFecha") Is two.Item("UFecha"), "of the same fields"
CheckEqual one.Item("NProfile").SourceName, "strNProfile", "fixed metadata"
CheckEqual one.Item("UFecha").DataType, CLng(exDateTime), "a date and time"
Set f = CreateObject("Celdo.clsCeldo")
f.Name = "Creador"
Set audit.NProfile = f
CheckEqual audit.Registro().ClipNames(), "Creador,UProfile,NFecha,UFecha", "a replaced field comes first"
Finish
