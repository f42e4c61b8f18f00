' A customer form driven by Celdo's service object, as a host form would use it.
'
' 1. A customer row is described once and loaded as if read from the database.
' 2. The form starts empty; FillForm writes the row into the controls bound to it.
' 3. PaintForm gives the form the service's colours, keeping the ones chosen by hand.
' 4. The user edits the form, typing one value the field refuses; FillCeldosForm reads every
'    other control all the same and then reports the refusal. Once corrected, the row takes it.
' 5. Before saving, the row checks its required fields.
' 6. A list view and a flex grid are filled from a data array, described by a header row.
'
' On Windows the host passes its real form. Here the form and its controls are script doubles
' that the test probe dresses in a control's type name ("TextBox", "ComboBox"...): under Wine a
' script class reports its type as "Object", and the service binds controls by their type.
' The doubles are shared with the tests:
' include: doubles/controls.vbs

Const W1 = 14
Const W2 = 14

Function Pad(text, width)
    Pad = Left(text & Space(width), width)
End Function

Sub Heading(title)
    WScript.Echo ""
    WScript.Echo title
    WScript.Echo String(Len(title), "-")
End Sub

Function Colour(value)
    Colour = "-"
    If Not IsEmpty(value) Then Colour = "&H" & Hex(value)
End Function

' ---- A flex grid -----------------------------------------------------------------------------

' A flex grid with one fixed row and column. Cells are kept by "row,col"; FormatString writes
' the captions into row 0; each row's banding colour is kept as CellBackColor is set.
Class FlexGridDouble
    Public Redraw
    Public Width
    Public BackColorBkg
    Public GridColorFixed
    Public GridColor
    Public ForeColor
    Public ForeColorFixed
    Public BackColorFixed
    Public WordWrap
    Public FixedRows
    Public FixedCols
    Public Rows
    Public Cols
    Public Row
    Public Col
    Public ColSel
    Public FillStyle
    Public RowHeightMin
    Private cells_
    Private Sub Class_Initialize()
        Set cells_ = CreateObject("Scripting.Dictionary")
        Width = 9000
        FixedRows = CLng(1)
        FixedCols = CLng(1)
        Rows = CLng(1)
        Cols = CLng(2)
    End Sub
    Public Property Let TextMatrix(r, c, v)
        cells_(r & "," & c) = v
    End Property
    Public Property Get TextMatrix(r, c)
        TextMatrix = cells_(r & "," & c)
    End Property
    Public Property Let FormatString(v)
        Dim captions, c
        captions = Split(v, "|")
        For c = 0 To UBound(captions)
            cells_("0," & c) = captions(c)
        Next
    End Property
    Public Property Get ColWidth(c)
        ColWidth = cells_("width," & c)
    End Property
    Public Property Let ColWidth(c, v)
        cells_("width," & c) = v
    End Property
    Public Property Let ColAlignment(c, v)
    End Property
    Public Property Let CellBackColor(v)
        cells_("band," & Row) = v
    End Property
End Class

' ---- The customer row --------------------------------------------------------------------------

Dim svc, probe, row, frm, lbl, msk, txtNombre, txtTelefono, cbo, chk, dtp, icb, icbRaw
Dim msg, ok, header, data, lv, lvRaw, grid, gridRaw, r, c, line, item

Sub ShowRow(withOld)
    Dim f, line
    If withOld Then
        WScript.Echo "  " & Pad("Field", W1) & Pad("Old value", 20) & "New value"
    Else
        WScript.Echo "  " & Pad("Field", W1) & Pad("Type", W2) & Pad("Size", 6) & Pad("Required", 10) & "Value"
    End If
    For Each f In row
        If withOld Then
            line = Pad(f.Name, W1) & Pad(f.OldValue, 20) & f.Value
            If f.Name = "Categoria" Then line = line & " (" & f.Description & ")"
        Else
            line = Pad(f.Name, W1) & Pad(f.DataTypeName, W2) & Pad(f.Size, 6) & Pad(f.Required, 10) & f.Value
        End If
        WScript.Echo "  " & line
    Next
End Sub

' What each control shows, as the user would see it.
Sub ShowForm()
    Dim ctl, shows
    WScript.Echo "  " & Pad("Control", W1) & Pad("Type", W2) & "Shows"
    For Each ctl In frm.Controls
        Select Case TypeName(ctl)
            Case "TextBox", "MaskEdBox"
                shows = "Text """ & ctl.Text & """, MaxLength " & ctl.MaxLength
            Case "Label"
                shows = "Caption """ & ctl.Caption & """"
            Case "CheckBox", "DTPicker"
                shows = "Value " & ctl.Value
            Case "ComboBox"
                shows = "ListIndex " & ctl.ListIndex & " """ & ctl.Text & """ of " & ctl.ListCount & " items"
            Case "ImageCombo"
                shows = "SelectedItem (none)"
                If Not ctl.SelectedItem Is Nothing Then shows = "SelectedItem """ & ctl.SelectedItem.Text & """"
                shows = shows & " of " & ctl.ComboItems.Count & " items"
        End Select
        WScript.Echo "  " & Pad(frm.Controls.Item(ctl), W1) & Pad(TypeName(ctl), W2) & shows
    Next
End Sub

Sub ShowColours(title)
    Dim ctl
    WScript.Echo "  " & title
    WScript.Echo "    " & Pad("form", W1) & Pad("BackColor " & Colour(frm.BackColor), 22) & "ForeColor " & Colour(frm.ForeColor)
    For Each ctl In Array(txtNombre, txtTelefono, lbl)
        line = Pad(frm.Controls.Item(ctl), W1) & Pad("BackColor " & Colour(ctl.BackColor), 22) & _
            Pad("ForeColor " & Colour(ctl.ForeColor), 22)
        If TypeName(ctl) = "Label" Then line = line & "BackStyle " & ctl.BackStyle
        WScript.Echo "    " & line
    Next
End Sub

Sub ReadBack()
    On Error Resume Next
    svc.FillCeldosForm frm, row, "Cliente"
    If Err.Number = 0 Then
        WScript.Echo "  FillCeldosForm read the form without complaint."
    Else
        WScript.Echo "  FillCeldosForm raised error " & Err.Number & " (&H" & Hex(Err.Number) & "), source " & Err.Source
        WScript.Echo "    """ & Err.Description & """"
    End If
    On Error GoTo 0
End Sub

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")

Heading "1. The customer row, as loaded from the database"
Set row = CreateObject("Celdo.clsCeldos")
row.Add "Codigo", "CLI_CODIGO", exLong, , , True
row.Add "Nombre", "CLI_NOMBRE", exText, 40, , True
row.Add "Telefono", "CLI_TELEFONO", exText, 20
row.Add "Pais", "CLI_PAIS", exLong
row.Add "Categoria", "CLI_CATEGORIA", exLong
row.Add "Activo", "CLI_ACTIVO", exBoolean
row.Add "Alta", "CLI_ALTA", exDate
row.Item("Nombre").Caption = "Razón social"
' Value lists of id;text pairs: the id is stored, the text shown.
row.Item("Pais").RowSource = "1;Argentina;2;Chile;3;Uruguay"
row.Item("Pais").ColumnCount = 2
row.Item("Categoria").RowSource = "1;Mayorista;2;Minorista"
row.Item("Categoria").ColumnCount = 2
row.Item("Codigo").Value = 1024
row.Item("Nombre").Value = "Peña Hnos. S.R.L."
row.Item("Telefono").Value = "2901 4455"
row.Item("Pais").Value = 3
row.Item("Categoria").Value = 2
row.Item("Activo").Value = True
row.Item("Alta").Value = DateSerial(2019, 3, 15)
ShowRow False

Heading "2. The form, before and after FillForm"
Set frm = New FormDouble
Set lbl = frm.Place(New ControlDouble, "Label", "lblNombre", "Cliente")
Set msk = frm.Place(New ControlDouble, "MaskEdBox", "mskCodigo", "Cliente")
Set txtNombre = frm.Place(New ControlDouble, "TextBox", "txtNombre", "Cliente")
Set txtTelefono = frm.Place(New ControlDouble, "TextBox", "txtTelefono", "Cliente")
Set cbo = frm.Place(New ListDouble, "ComboBox", "cboPais", "Cliente")
Set icbRaw = New ImageComboDouble
Set icb = frm.Place(icbRaw, "ImageCombo", "icbCategoria", "Cliente")
Set chk = frm.Place(New ControlDouble, "CheckBox", "chkActivo", "Cliente")
Set dtp = frm.Place(New ControlDouble, "DTPicker", "dtpAlta", "Cliente")
ShowForm
svc.FillForm frm, row, "Cliente"
WScript.Echo ""
WScript.Echo "  svc.FillForm frm, row, ""Cliente"""
ShowForm
WScript.Echo "  cboPais items (text/ItemData): " & cbo.Listing
WScript.Echo "  icbCategoria items (key:text): " & icbRaw.ComboItems.Listing
WScript.Echo "  ({Ninguno} is offered because Categoria is not required.)"

Heading "3. PaintForm"
' As designed: the name's text box and label show the system button face, the phone's
' colour was chosen by hand.
txtNombre.BackColor = &H8000000F
lbl.BackColor = &H8000000F
lbl.ForeColor = &H80000012
lbl.BackStyle = 1
txtTelefono.BackColor = &HC0FFFF
ShowColours "before:"
svc.PaintForm frm
ShowColours "after svc.PaintForm frm (CellBackColor " & Colour(svc.CellBackColor) & ", BackColor " & _
    Colour(svc.BackColor) & ", ForeColor " & Colour(svc.ForeColor) & "):"

Heading "4. The user edits the form and it is read back"
msk.Text = "12a"
txtNombre.Text = "Peña Hermanos S.A."
txtTelefono.Text = "+598 2901 4455"
cbo.ListIndex = 1
chk.Value = 0
Set icbRaw.SelectedItem = icbRaw.ComboItems.Item("K1")
dtp.Value = DateSerial(2019, 4, 1)
WScript.Echo "  Typed ""12a"" as the code, a new name and phone; chose Chile and Mayorista;"
WScript.Echo "  unticked Activo; moved Alta to " & dtp.Value & "."
ShowForm
WScript.Echo ""
ReadBack
WScript.Echo "  Every other control was read all the same:"
ShowRow True
WScript.Echo ""
msk.Text = "1205"
WScript.Echo "  The code corrected to ""1205"":"
ReadBack
ShowRow True

Heading "5. Checking required fields before a save"
txtNombre.Text = ""
ReadBack
msg = ""
ok = row.ValidateRequired(msg, exInsert)
WScript.Echo "  With the name cleared, row.ValidateRequired(msg, exInsert) = " & ok
WScript.Echo "    " & Replace(Trim(msg), vbCrLf, vbCrLf & "    ")
txtNombre.Text = "Peña Hermanos S.A."
ReadBack
msg = ""
ok = row.ValidateRequired(msg, exInsert)
WScript.Echo "  With the name typed again: " & ok & ", message """ & msg & """"

Heading "6. A list view and a flex grid filled from a data array"
Set header = CreateObject("Celdo.clsCeldos")
header.Add "Codigo", "", exLong
header.Add "Nombre", "", exText, 40
header.Add "Pais", "", exText, 12
header.Add "Saldo", "", exCurrency
header.Item("Codigo").Caption = "Código"
header.Item("Nombre").Caption = "Razón social"
header.Item("Pais").Caption = "País"
header.Item("Saldo").Format = "#,##0.00"
' data(column, row), as the data-access object returns rows.
ReDim data(3, 3)
line = Array(1024, "Peña Hermanos S.A.", "Chile", 15230.5, _
             1025, "Distribuidora Sur", "Argentina", Null, _
             1030, "Café del Puerto", "Uruguay", 820, _
             1042, "Núñez & Cía.", "Argentina", 3100.75)
For r = 0 To 3
    For c = 0 To 3
        data(c, r) = line(4 * r + c)
    Next
Next

Set lvRaw = New ListViewDouble
Set lv = probe.Disguise(lvRaw, "ListView")
svc.FillListView lv, 0, data, header
WScript.Echo "  svc.FillListView lv, 0, data, header (alignment 0 left, 1 right; widths in twips)"
line = ""
For c = 1 To lvRaw.ColumnHeaders.Count
    Set item = lvRaw.ColumnHeaders.Item(c)
    line = line & Pad(item.Text & " " & CLng(item.Width) & "/" & item.Alignment, 21)
Next
WScript.Echo "    " & line
For r = 1 To lvRaw.ListItems.Count
    Set item = lvRaw.ListItems.Item(r)
    line = Pad(item.Text, 21)
    For c = 1 To 3
        line = line & Pad(item.SubItems(c), 21)
    Next
    WScript.Echo "    " & line
Next

Set gridRaw = New FlexGridDouble
Set grid = probe.Disguise(gridRaw, "MSFlexGrid")
svc.FlexGridHeader grid, header
svc.FillFlexGrid grid, data, header
WScript.Echo ""
WScript.Echo "  svc.FlexGridHeader grid, header and svc.FillFlexGrid grid, data, header:"
WScript.Echo "  " & gridRaw.Rows & " rows, " & gridRaw.Cols & " columns (column 0 and row 0 fixed); banding colour at the right"
For r = 0 To gridRaw.Rows - 1
    line = ""
    For c = 1 To gridRaw.Cols - 1
        line = line & Pad(gridRaw.TextMatrix(r, c), 21)
    Next
    If r > 0 Then line = line & Colour(gridRaw.TextMatrix("band", r))
    WScript.Echo "    " & line
Next
line = ""
For c = 1 To gridRaw.Cols - 1
    line = line & Pad(gridRaw.ColWidth(c), 21)
Next
WScript.Echo "    " & line & "(column widths)"
WScript.Echo "  The grid shows the missing balance as empty text, and data(3, 1) now holds """ & data(3, 1) & """."

WScript.Echo ""
WScript.Echo "End of demonstration."
