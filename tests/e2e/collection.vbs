' clsCeldos as a VBScript host uses it: Add with optional arguments left out, the default
' member by key and by position, a key written back trimmed, For Each, sharing and copies.
Dim row, f, g, k, x, s, other, copy, name
Set row = CreateObject("Celdo.clsCeldos")
Set f = row.Add("Codigo", "COD", exLong)
CheckEqual f.Position, CInt(0), "the first field's position"
CheckEqual f.SourceName, "COD", "source name"
Set g = row.Add("CODIGO", "", exText)
CheckEqual row.Count, CLng(2), "duplicate names are both kept"
Check row("codigo") Is f, "the default member finds a key without regard to case"
Check row.Item(2) Is g, "an Integer position"
Check row(1) Is row(1), "the same field reached twice is the same object"

k = "  Codigo "
Check row.Item(k) Is f, "a padded key"
CheckEqual k, "Codigo", "the trimmed key is written back into the variable"

s = ""
For Each x In row
    s = s & x.Name & ";"
Next
CheckEqual s, "Codigo;CODIGO;", "For Each in position order"

row.Add "Precio", "PRECIO", exCurrency, , , True, , , "$12.5"
CheckEqual row("Precio").Value, CCur("12.5"), "a value given among left-out optional arguments"
CheckEqual row("Precio").Required, True, "Required given"

row.Remove CLng(1)
CheckEqual row.Count, CLng(3), "a Long index removes nothing"
row.Remove 1
CheckEqual row.Count, CLng(2), "an Integer index removes"
row.Remove "precio"
CheckEqual row.Count, CLng(1), "a key removes"

' Named Item: Wine's VBScript drops the error of a default-member call such as row("nada")
' (Windows raises it the same way).
On Error Resume Next
Set x = row.Item("nada")
CheckError 5, "", "Invalid procedure call or argument", "a missing key"
Set x = row.Item(9)
CheckError 5, "", "", "a missing position"
row.Remove "nada"
CheckError 5, "", "", "removing a missing key"
On Error GoTo 0

Set other = CreateObject("Celdo.clsCeldos")
other.Appends row
Check other(1) Is row(1), "Appends shares the fields"
other(1).Value = "cambiado"
CheckEqual row(1).Value, "cambiado", "a change through one collection shows in the other"

name = "Copia"
Set copy = row.Duplicate(g, name)
Check Not (copy Is g), "Duplicate makes a new field"
CheckEqual copy.Name, "Copia", "with the new name"
CheckEqual copy.Value, "cambiado", "and the value"
CheckEqual row.Count, CLng(1), "detached"
row.AppendAs g, "Otra"
CheckEqual row.Count, CLng(2), "AppendAs inserts a copy"
CheckEqual row.Exist("OTRA"), True, "found by its new name"

row.AddParameter "@desde", exDate, "2024-01-01", ">="
CheckEqual row("@desde").Description, ">=", "a parameter's operator is kept in Description"
Finish
