' A data-entry round trip with Celdo, as a host form would drive it.
'
' 1. A customer row is described once: typed fields, some required, one with a value list,
'    and the four audit-trail fields.
' 2. Values arrive as a user types them and each field converts them to its type; a value a
'    field cannot hold is refused with an automation error.
' 3. Before saving, the row checks its required fields (insert and update modes) and returns
'    the Spanish messages a form shows.
' 4. The row travels as XML, as clipboard text and as an attribute list; the attribute list is
'    parsed into a second row, which agrees with the first.

Const W1 = 14
Const W2 = 10

Function Pad(text, width)
    Pad = Left(text & Space(width), width)
End Function

Sub Heading(title)
    WScript.Echo ""
    WScript.Echo title
    WScript.Echo String(Len(title), "-")
End Sub

' The customer row, described once; the same description makes the second row.
Function CustomerRow()
    Dim row, audit
    Set row = CreateObject("Celdo.clsCeldos")
    row.Add "Codigo", "CLI_CODIGO", exLong, , , True
    row.Add "Nombre", "CLI_NOMBRE", exText, 40, , True
    row.Add "Saldo", "CLI_SALDO", exCurrency
    row.Add "Descuento", "CLI_DESCUENTO", exDouble
    row.Add "Alta", "CLI_ALTA", exDateTime
    row.Add "Activo", "CLI_ACTIVO", exBoolean
    row.Add "Pago", "CLI_PAGO", exText, 10, , True
    row.Item("Nombre").Caption = "Razón social"
    row.Item("Pago").Caption = "Forma de pago"
    row.Item("Pago").RowSourceType = exValueList
    row.Item("Pago").RowSource = "Contado;Crédito;Cheque"
    Set audit = CreateObject("Celdo.CeldosSeguimiento")
    row.Appends audit.Registro()
    Set CustomerRow = row
End Function

Sub ShowRow(row)
    Dim f, v
    WScript.Echo "  " & Pad("Field", W1) & Pad("Type", W2) & "Value"
    For Each f In row
        v = f.Value
        WScript.Echo "  " & Pad(f.Caption, W1) & Pad(TypeName(v), W2) & v
    Next
End Sub

Dim row, copy, f, msg, xml, attributes, typed, agree, same

Heading "1. The row"
Set row = CustomerRow()
WScript.Echo "  " & row.Count & " fields: " & row.ClipNames(, ", ")
WScript.Echo "  required: " & row.Range("Codigo,Nombre,Pago,NProfile,UProfile,NFecha,UFecha").ClipNames(, ", ")

Heading "2. Values as a user types them"
typed = Array("Codigo", "1024", "Nombre", "Peña & Núñez S.A.", "Saldo", "$1,234", _
              "Descuento", "12,5%", "Alta", "2024-05-17T09:30:00", "Activo", "verdadero", "Pago", "Crédito")
For f = 0 To UBound(typed) Step 2
    row.Item(typed(f)).Value = typed(f + 1)
    WScript.Echo "  " & Pad(typed(f), W1) & Pad("""" & typed(f + 1) & """", 24) & "-> " & _
        TypeName(row.Item(typed(f)).Value) & " " & row.Item(typed(f)).Value
Next
WScript.Echo "  (a percentage is divided by 100, its comma read as the decimal mark; dates keep their text)"
On Error Resume Next
row.Item("Codigo").Value = "mil veinticuatro"
WScript.Echo "  Codigo = ""mil veinticuatro"" is refused:"
WScript.Echo "    error " & Err.Number & " (&H" & Hex(Err.Number) & "), source " & Err.Source
WScript.Echo "    """ & Err.Description & """"
Err.Clear
On Error GoTo 0
WScript.Echo ""
ShowRow row

Heading "3. Checking required fields before a save"
msg = ""
WScript.Echo "  update mode (only changed fields): " & row.ValidateRequired(msg) & ", no message: " & (msg = "")
row.Item("Pago").Value = "Tarjeta"
row.Item("NProfile").Value = "ana"
row.Item("UProfile").Value = "ana"
msg = ""
WScript.Echo "  insert mode (every field): " & row.ValidateRequired(msg, exInsert)
WScript.Echo "    " & Replace(Trim(msg), vbCrLf, vbCrLf & "    ")
row.Item("Pago").Value = "Contado"
msg = ""
WScript.Echo "  after choosing ""Contado"": " & row.ValidateRequired(msg, exInsert)

Heading "4. The row as text"
WScript.Echo "  XML (UTF-8: accents and markup as entities):"
WScript.Echo "    " & Replace(Trim(row.XML("UTF-8")), vbCrLf, vbCrLf & "    ")
WScript.Echo "  Clipboard (tab-separated; shown with | ):"
WScript.Echo "    " & Replace(row.ClipHeader, vbTab, " | ")
WScript.Echo "    " & Replace(row.ClipAttribute, vbTab, " | ")
attributes = row.XMLAttribute("UTF-8")
WScript.Echo "  Attribute list:"
WScript.Echo "   " & attributes

Heading "5. Parsed back into a second row"
Set copy = CustomerRow()
copy.Parse "UTF-8", attributes
' Compared as text, as the attribute list carries them: a Boolean comes back as the text "true".
WScript.Echo "  " & Pad("Field", W1) & Pad("First", 24) & Pad("Second", 24) & "Same"
agree = True
For Each f In row
    same = StrComp(CStr(f.Value), CStr(copy.Item(f.Name).Value), vbTextCompare) = 0
    WScript.Echo "  " & Pad(f.Name, W1) & Pad(f.Value, 24) & Pad(copy.Item(f.Name).Value, 24) & same
    If Not same Then agree = False
Next
WScript.Echo "  The two rows agree: " & agree

WScript.Echo ""
WScript.Echo "End of demonstration."
