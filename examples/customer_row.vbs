' A customer row as a data-entry form sees it, and the text forms it travels in.
'
' The row is a clsCeldos of typed fields: what the user types is checked and converted to each
' field's type. The row then goes out as the library's XML, as a tab-separated line for the
' clipboard and as an attribute list, and comes back from the attribute list and the XML.

Dim row, f, copy, tree, loaded, pos, xml, attributes

Set row = CreateObject("Celdo.clsCeldos")
row.Add "Codigo", "CLI_CODIGO", exLong, , , True
row.Add "Nombre", "CLI_NOMBRE", exText, 40, , True
row.Add "Alta", "CLI_ALTA", exDate
row.Add "Saldo", "CLI_SALDO", exCurrency
row.Item("Nombre").Caption = "Razón social"

' Values as a user types them: text that each field converts to its type.
row.Item("Codigo").Value = "1,024"
row.Item("Nombre").Value = "Peña & Núñez S.A."
row.Item("Alta").Value = "3/5/2021"
row.Item("Saldo").Value = "1250.50"
WScript.Echo "Values after conversion:"
For Each f In row
    WScript.Echo "  " & Left(f.Caption & Space(14), 14) & TypeName(f.Value) & Space(10 - Len(TypeName(f.Value))) & f.Value
Next

On Error Resume Next
row.Item("Codigo").Value = "mil"
WScript.Echo "Typing ""mil"" into Codigo: error " & Hex(Err.Number) & ", """ & Err.Description & """"
Err.Clear
On Error GoTo 0
WScript.Echo ""

WScript.Echo "As the library's XML (UTF-8: accents and markup become entities):"
WScript.Echo row.XML("UTF-8")
WScript.Echo "For the clipboard (header and values, tab-separated):"
WScript.Echo "  " & Replace(row.ClipHeader, vbTab, " | ")
WScript.Echo "  " & Replace(row.ClipAttribute, vbTab, " | ")
WScript.Echo "Field names: " & row.ClipNames()
WScript.Echo ""

attributes = row.XMLAttribute("UTF-8")
WScript.Echo "As an attribute list:"
WScript.Echo " " & attributes
Set copy = CreateObject("Celdo.clsCeldos")
copy.Parse "UTF-8", attributes
WScript.Echo "Parsed into a new row: " & copy.Count & " fields, Nombre = " & copy.Item("Nombre").Value
WScript.Echo ""

' A field with children writes a nested element, and LoadElement reads it back.
Set tree = CreateObject("Celdo.clsCeldo")
tree.Name = "Cliente"
tree.Attributes.Add "id", "", exText, , , , , , "1024"
tree.Children.Appends row
xml = tree.XML("UTF-8")
WScript.Echo "A field tree as XML:"
WScript.Echo xml
Set loaded = CreateObject("Celdo.clsCeldo")
pos = 0
loaded.LoadElement "UTF-8", pos, xml
WScript.Echo "Loaded back: <" & loaded.Name & " id=" & loaded.Attributes.Item("id").Value & "> with " & _
    loaded.Children.Count & " children; Nombre = " & loaded.Children.Item("Nombre").Value & _
    "; read " & pos & " of " & Len(xml) & " characters"
WScript.Echo ""
WScript.Echo "End of demonstration."
