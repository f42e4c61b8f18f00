' clsCeldo as a VBScript host uses it: the default member, a refused value's error as the script
' sees it, an argument left out, a message written back by reference, a value list as an array,
' and its sub-collections. The field's rules have native tests (tests/fields).
Dim f, v, msg, rows
Set f = CreateObject("Celdo.clsCeldo")
f.Name = "strNombre"
f.DataType = exCurrency
f.Value = "$1,234"
v = f
CheckEqual v, CCur(1234), "Value is the default member"
On Error Resume Next
f.Value = "abc"
CheckError -2147221504, "Celdo_strNombre", "Tipo de dato no valido para : Nombre", "a refused value"
On Error GoTo 0
f.DataType = exText
f.Value = "abc"
f.DataType = exLong
CheckEqual f.Validate(), False, "Validate with its argument left out judges the stored value"

f.DataType = exText
f.Value = ""
f.Required = True
msg = ""
CheckEqual f.ValidateRequired(msg), False, "a required empty text"
CheckEqual msg, "El campo Nombre no puede contener un valor nulo. Escriba un valor en este campo." & vbCrLf, _
    "the message, written back"

f.ColumnCount = 2
f.RowSource = "1;Uno;2;Dos"
rows = f.GetRowSource
CheckEqual UBound(rows, 1) & "," & UBound(rows, 2) & " " & rows(1, 1), "1,1 Dos", "a value list as columns by rows"
' The native type-name test leaves this entry out.
CheckEqual f.DataTypeName, "Texto", "a text field's type name"

Check f.Children Is f.Children, "Children is one object"
f.ExtendProperties.Add "Mask", "", exText, , , , , , "##-##"
CheckEqual f.Item("Mask"), "##-##", "Item reads an extended property by name"
Set f.ExtendProperties = Nothing
Check f.ExtendProperties Is Nothing, "a Nothing set stays Nothing"
Finish
