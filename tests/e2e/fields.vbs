' Fields, rows and records as a VBScript host uses them, where only a host shows it: a refused
' value's error as the script sees it, a message written back into the script's variable, the
' same objects through every path and For Each, and accented text through the script's code
' page. The member machinery has its script test on the probe (dispatch.vbs); the rules have
' native tests (tests/fields, tests/collections, tests/xml).
Dim f, row, reg, v, msg, s, x
Set row = CreateObject("Celdo.clsCeldos")
Set f = row.Add("Nombre", "", exText, , , True)
row.Add "Precio", "", exCurrency, , , , , , "$1,234"
v = row("precio")
CheckEqual v, CCur(1234), "a value given among arguments left out, read through both default members"
' The native type-name test leaves this entry out.
CheckEqual f.DataTypeName, "Texto", "a text field's type name"
msg = ""
CheckEqual row.ValidateRequired(msg, exInsert), False, "a required empty text"
CheckEqual msg, "El campo Nombre no puede contener un valor nulo. Escriba un valor en este campo." & vbCrLf, _
    "the message, written back"
On Error Resume Next
row("Precio").Value = "abc"
CheckError -2147221504, "Celdo_Precio", "Tipo de dato no valido para : Precio", "a refused value"
On Error GoTo 0

Set reg = CreateObject("Celdo.clsRegistro")
reg.Add row, "uno"
reg.AppendAs row, "copia"
s = ""
For Each x In reg
    s = s & (x Is row) & (x(1) Is f) & ";"
Next
CheckEqual s, True & True & ";" & False & False & ";", "For Each over the records: the row itself, then a copy of its own"

f.Value = "Peña & Güemes " & String(40000, "x")
CheckEqual Left(row.XML("ISO-8859-1"), 29), "<Nombre>Pe&ntilde;a &amp; G" & Chr(195) & Chr(188), _
    "an ISO-8859 name writes the UTF-8 bytes"
Set x = CreateObject("Celdo.clsCeldos")
CheckEqual x.Parse("ISO-8859-1", row.XMLAttribute("ISO-8859-1")), True, "Parse what XMLAttribute wrote"
CheckEqual x("Nombre").Value, f.Value, "the accents come back, and a text past 32,767 characters"
reg.Clear
Finish
