' clsCeldo as a VBScript host uses it: metadata with its side effects, values validated and
' coerced, errors with their Spanish texts, by-reference messages, the default member.
Dim f, g, v, msg, rows, kids
Set f = CreateObject("Celdo.clsCeldo")

CheckEqual f.DataType, CLng(exText), "a new field is text"
CheckEqual f.Position, CInt(-1), "no position"
CheckEqual f.Operator, "=", "default operator"
CheckEqual f.RowSourceType, CLng(exQuery), "derived from the empty row source"
f.Name = "strNombre"
CheckEqual f.Caption, "Nombre", "the caption falls back to the name without its prefix"

f.DataType = exCurrency
CheckEqual f.Size, CLng(30), "currency size by type"
CheckEqual f.Redondeo, CInt(4), "currency rounding"
CheckEqual f.Format, "###,###,###,###,##0;(###,###,###,###,##0);0", "currency default format"
f.Value = "$1,234"
CheckEqual f.Value, CCur(1234), "currency text with its symbol"
v = f
CheckEqual v, CCur(1234), "Value is the default member"
f.Value = "12%"
CheckEqual f.Value, CCur("0.12"), "a percentage"
CheckEqual f.OldValue, CCur(1234), "the first value stays as the old value"
CheckEqual f.Updated, True, "changed since loaded"
f.Undo
CheckEqual f.Value, CCur(1234), "Undo"

On Error Resume Next
f.Value = "abc"
CheckError -2147221504, "Celdo_strNombre", "Tipo de dato no valido para : Nombre", "a refused value"
CheckEqual f.Value, CCur(1234), "nothing was stored"
f.Format = "#,##0;-#,##0"
CheckError -2147221503, "Celdo", "Formato no valido", "a numeric format with a minus sign"
f.Operator = "CONTAINS"
CheckError -2147221504, "Celdo", "Operator no valido para el campo Nombre", "an unknown operator"
f.Conjunction = "XOR"
CheckError -2147221504, "Celdo", "Conjunción no valida Nombre", "an unknown conjunction (with its accent)"
f.NodeType = xntUnknown
v = f.NodeType
CheckError -2147221504, "Celdo.NodeType", "Required property not initialized", "NodeType unknown"
On Error GoTo 0
f.NodeType = xntNode

f.Operator = " like "
CheckEqual f.Operator, " LIKE ", "LIKE upper-cased, blanks kept"
f.Operator = "isnull"
CheckEqual f.Operator, "IS NULL", "IS NULL"

' Validation, with optional arguments left out and a message written back.
f.DataType = exText
f.Value = Empty
f.Required = True
f.Caption = "Nombre"
Check f.Validate(), "Validate with no argument judges the stored value"
CheckEqual f.Validate(12), True, "any value is text"
f.Value = ""
msg = ""
CheckEqual f.ValidateRequired(msg), False, "a required empty text"
CheckEqual msg, "El campo Nombre no puede contener un valor nulo. Escriba un valor en este campo." & vbCrLf, "the null message, written back"
f.RowSource = "A;B"
f.Value = "A,C"
msg = ""
f.ValidateRequired msg, exInsert
CheckEqual msg, "[ C ] no hace parte de la lista de valores del campo Nombre. Escriba un valor valido en este campo." & vbCrLf, "the list message"

' Value lists and display controls come back as arrays.
f.ColumnCount = 2
f.RowSource = "1;Uno;2;Dos"
rows = f.GetRowSource
CheckEqual UBound(rows, 1), CLng(1), "two columns"
CheckEqual rows(1, 1), "Dos", "cell (1, 1)"
v = f.DisplayControlType
CheckEqual v(1, 0), "Cuadro de texto", "display control names"

CheckEqual f.Redondear(2.5, 0), CDbl(2), "Redondear ties to even"
CheckEqual f.Redondear(1234, -2), CInt(1200), "Redondear to hundreds keeps the Integer a literal is"
CheckEqual f.Redondear(CLng(1234), -2), CLng(1200), "and a Long"
CheckEqual f.DataTypeName, "Texto", "type name"

' The same collection reached twice is one object.
Set kids = f.Children
Check kids Is f.Children, "Children is one object"
Check Not (f.Children Is f.Attributes), "Children and Attributes are different"
CheckEqual f.HasChildren, False, "no children yet"
kids.Add "Hijo", "", exText
CheckEqual f.HasChildren, True, "a child added through the collection"

' Extended properties are a collection of their own until the host sets something else.
Set g = CreateObject("Celdo.clsCeldo")
Check g.ExtendProperties Is g.ExtendProperties, "ExtendProperties is one object"
g.ExtendProperties.Add "Mask", "", exText, , , , , , "##-##"
CheckEqual g.Item("Mask"), "##-##", "an extended property read by name"
Set g.ExtendProperties = Nothing
Check g.ExtendProperties Is Nothing, "a Nothing set stays Nothing"
Check IsEmpty(g.Item("Mask")), "and no extended property is found"
Finish
