' clsCeldos as a VBScript host uses it: TypeName, Add with optional arguments left out, the
' default member, a key written back trimmed, For Each, identity and a missing key's error. The
' collection's rules have native tests (collections/clsCeldos_test.cpp).
Dim row, f, g, k, x, s, other
Set row = CreateObject("Celdo.clsCeldos")
' Wine reports the default interface's name.
Check TypeName(row) = "clsCeldos" Or TypeName(row) = "_clsCeldos", "TypeName: " & TypeName(row)
Set f = row.Add("Codigo", "COD", exLong)
Set g = row.Add("Precio", "PRECIO", exCurrency, , , True, , , "$12.5")
CheckEqual g.Value, CCur("12.5"), "a value given among left-out optional arguments"
CheckEqual g.Required, True, "Required given"
Check row("codigo") Is f, "the default member finds a key without regard to case"
Check row.Item(2) Is g, "an Integer position"

k = "  Codigo "
Check row.Item(k) Is f, "a padded key"
CheckEqual k, "Codigo", "the trimmed key is written back into the variable"

s = ""
For Each x In row
    s = s & x.Name & ";"
Next
CheckEqual s, "Codigo;Precio;", "For Each in position order"

' Named Item: Wine's VBScript drops the error of a default-member call such as row("nada").
On Error Resume Next
Set x = row.Item("nada")
CheckError 5, "", "Invalid procedure call or argument", "a missing key"
On Error GoTo 0

Set other = CreateObject("Celdo.clsCeldos")
other.Appends row
Check other(1) Is row(1), "Appends shares the fields"
Finish
