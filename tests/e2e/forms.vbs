' Forms, lists, combos, image combos, toolbars and grid transfers from VBScript against real COM,
' through script doubles of the controls disguised by the test probe. The rules have native
' tests; this checks what only a script host shows: the form's controls walked through the
' host's own enumerator, arguments written back by reference, omitted separators, a field's
' refusal reaching the script with its number and text, the platform's picture loader, and
' every member of the lists, toolbars, forms and transfers reached by name.
' include: ../../examples/doubles/controls.vbs

' A data grid: lines as added, and a current row read through its three columns.
Class DataGridDouble
    Public FieldSeparator
    Public Lines
    Public Row
    Public Cols
    Public Columns
    Public Removed
    Private Sub Class_Initialize()
        Set Columns = New GridColumnsDouble
    End Sub
    Public Sub AddItem(line)
        Lines = Lines & "[" & line & "]"
    End Sub
    Public Sub RemoveItem(i)
        Removed = Removed & i
    End Sub
    Public Sub RemoveAll()
        Lines = ""
    End Sub
End Class

Class GridColumnDouble
    Public Value
    Public Caption
    Public Width
End Class

Class GridColumnsDouble
    Private columns_
    Private Sub Class_Initialize()
        Dim i, column
        Set columns_ = CreateObject("Scripting.Dictionary")
        For i = 0 To 2
            Set column = New GridColumnDouble
            column.Value = "v" & i
            columns_.Add i, column
        Next
    End Sub
    Public Property Get Item(i)
        Set Item = columns_.Item(i)
    End Property
End Class

' The host's data-access object: lists ask ExecFillArray (four or six arguments), forms GetArray.
Class DataAccessDouble
    Public Received
    Public Status
    Public Property Get Evaluador()
        Set Evaluador = Me
    End Property
    Public Function ReplaceExpresion(text, row)
        ReplaceExpresion = text
        If Not row Is Nothing Then ReplaceExpresion = Replace(text, "[Pais]", row.Item("Pais").Value)
    End Function
    Public Function GetArray(ByRef query, ByRef mode, ByRef st)
        Dim rows
        Received = query
        ReDim rows(1, 1)
        rows(0, 0) = 10
        rows(1, 0) = "Rosario"
        rows(0, 1) = 20
        rows(1, 1) = "Mendoza"
        GetArray = rows
    End Function
    Public Function ExecFillArray(ByRef query, ByRef mode, ByRef st, ByRef header, ByRef absent, ByRef params)
        Dim rows
        Received = query & "," & mode & "," & st & "," & IsObject(header) & "," & IsMissing(absent)
        st = Status
        If IsObject(params) Then
            Received = Received & "," & params.Item("Id").Value
            params.Item("Id").Value = 99
        End If
        ReDim rows(1, 0)
        rows(0, 0) = 7
        rows(1, 0) = "Ana"
        ExecFillArray = rows
    End Function
    Private Function IsMissing(v)
        IsMissing = (VarType(v) = vbError)
    End Function
End Class

' ExecFillGrid's data-access object: the seven-argument form, a header with one captioned field.
Class GridDataAccessDouble
    Public HayConexion
    Public Function ExecFillArray(ByRef query, ByRef mode, ByRef st, ByRef header, ByRef options, ByRef params, ByRef maxRows)
        Dim rows
        Set header = CreateObject("Celdo.clsCeldos")
        header.Add "Id", "", exLong
        header.Item("Id").Caption = "Número"
        ReDim rows(0, 0)
        rows(0, 0) = 5
        ExecFillArray = rows
    End Function
End Class

Dim svc, probe, da, frm, row, txt, msk, lbl, chk, dtp, cbo, icbo, img, other, raw, text, lst, params, rows
Dim tb, index, lv1, lv2, grid, gridRaw, i, fso, bmp, path

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")
Set da = New DataAccessDouble
Set svc.Ex = probe.Disguise(da, "DataAccess")  ' so that the short form reaches a six-argument function

' ---- Lists, combos and image combos -----------------------------------------------------------

Set raw = New ListDouble
Set lst = probe.Disguise(raw, "ComboBox")
svc.FillListDB lst, "Contado,Crédito;Cheque"
CheckEqual raw.Listing, "Contado/0; Crédito/0; Cheque/0", "a value list cut at , and ;"
ReDim rows(2, 0)
rows(0, 0) = 7
rows(1, 0) = "Ana"
rows(2, 0) = "Gómez"
svc.FillListDB lst, rows
CheckEqual raw.Listing, "Ana~Gómez/7", "a row's text joined by tabs, its identifier in ItemData"

Set params = CreateObject("Celdo.clsCeldos")
params.AddParameter "Id", exLong, 5
da.Status = 0
svc.ExecFillListDB lst, "  select Id, Nombre From Clientes", params
CheckEqual da.Received, "  select Id, Nombre From Clientes,5273,0,True,True,5", _
    "ExecFillListDB gives the parameters in the long form, the fifth argument missing"
CheckEqual params.Item("Id").Value, CLng(99), "and the host's output parameter reaches the caller"
CheckEqual raw.Listing, "Ana/7", "the list filled from the answer"
da.Status = -1
svc.ExecFillListDB lst, "Select 1"
CheckEqual da.Received, "Select 1,5273,0,True,True", "without parameters: the short form (padded by the probe)"
CheckEqual raw.Listing, "", "a failed status leaves the list cleared and empty"

Set raw = New ImageComboDouble
Set icbo = probe.Disguise(raw, "icbo")
da.Status = 0
svc.ExecFillListDB icbo, "Select Id, Nombre From Clientes"
CheckEqual raw.ComboItems.Listing, "K7:Ana*", "an icbo is filled as an image combo, keyed, its first item shown"
svc.AddComboItem icbo, "8", "Eva", 2
CheckEqual raw.ComboItems.Listing, "K7:Ana*; K8:Eva img2", "AddComboItem with its second image omitted"
svc.FillImageCombo icbo, "Rojo;Verde"
CheckEqual raw.ComboItems.Listing, ":Rojo*; :Verde", "FillImageCombo from a value list, unkeyed"

' ---- Toolbars ---------------------------------------------------------------------------------

Set raw = New ToolbarDouble
Set tb = probe.Disguise(raw, "Toolbar")
ReDim rows(3, 1)
rows(0, 0) = 1
rows(1, 0) = "Nuevo"
rows(2, 0) = 0
rows(3, 0) = "Crea un registro"
rows(0, 1) = "Save"
rows(1, 1) = "Guardar"
rows(2, 1) = -1
rows(3, 1) = "Guarda"
svc.FillToolBar tb, rows, True
CheckEqual raw.Buttons.Listing, "K1:Nuevo img0 tip Crea un registro; Save:Guardar tip Guarda", _
    "buttons keyed, with image and tooltip; an image below 0 left unset"
svc.AddButtonItem tb, "", "Salir"
index = "Save"
ReDim rows(1, 1)
rows(0, 0) = 1
rows(1, 0) = "Como..."
rows(0, 1) = "All"
rows(1, 1) = "Todo"
svc.FillButtonMenus tb, index, rows, True
svc.AddButtonMenuItem tb, index, "", "Otro"
CheckEqual raw.Buttons.Item("Save").ButtonMenus.Shown, "[K1:Como...][All:Todo][:Otro]", "a button's menu by key"
CheckEqual raw.Buttons.Count, CLng(3), "AddButtonItem with its optional arguments omitted"

' ---- A form both ways -------------------------------------------------------------------------

Set row = CreateObject("Celdo.clsCeldos")
row.Add "Codigo", "", exLong, , , True
row.Add "Nombre", "", exText, 40
row.Add "Activo", "", exBoolean
row.Add "Ciudad", "", exLong
row.Add "Pais", "", exLong
row.Add "Foto", "", exText
row.Item("Codigo").Value = 12
row.Item("Nombre").Value = "Ana"
row.Item("Nombre").Caption = "Razón social"
row.Item("Activo").Value = True
row.Item("Ciudad").Value = 20
row.Item("Ciudad").RowSource = "Select Id, Nombre From Ciudades Where Pais = [Pais]"
row.Item("Pais").Value = 54

Set frm = New FormDouble
Set txt = frm.Place(New ControlDouble, "TextBox", "txtNombre", "Cliente")
Set msk = frm.Place(New ControlDouble, "MaskEdBox", "mskCodigo", "Cliente")
Set lbl = frm.Place(New ControlDouble, "Label", "lblNombre", "Cliente")
Set chk = frm.Place(New ControlDouble, "CheckBox", "chkActivo", "Cliente")
Set cbo = frm.Place(New ListDouble, "ComboBox", "cboCiudad", "Cliente")
Set img = frm.Place(New ControlDouble, "Image", "imgFoto", "Cliente")
Set other = frm.Place(New ControlDouble, "TextBox", "txtNombre2", "cliente")
other.DataField = "Nombre"
txt.BackColor = &H8000000F
lbl.BackColor = &H8000000F
lbl.ForeColor = &H80000012

svc.FillForm frm, row, "Cliente"
CheckEqual txt.Text & "|" & txt.MaxLength & "|" & msk.Text & "|" & lbl.Caption & "|" & chk.Value, _
    "Ana|40|12|Razón social|1", "FillForm writes text boxes, labels and check boxes"
CheckEqual cbo.Listing & " at " & cbo.ListIndex, "Rosario/10; Mendoza/20 at 1", _
    "a combo filled from its field's query, with the row's values replaced, and the value chosen"
CheckEqual da.Received, "Select Id, Nombre From Ciudades Where Pais = 54", "the query the host was asked"
Check IsEmpty(other.Text), "a control of another group is left alone"
CheckEqual img.Picture.Type, 0, "an empty picture for a field without a picture file"
CheckEqual svc.FindRowSource(row.Item("Ciudad"), Empty), "Mendoza", "FindRowSource asks the host for a query's rows"

svc.PaintForm frm
CheckEqual txt.BackColor & "," & lbl.BackStyle & "," & lbl.ForeColor & "," & chk.Appearance, _
    svc.CellBackColor & ",0," & svc.ForeColor & ",0", "PaintForm repaints what still shows the system colours"
CheckEqual frm.BackColor, svc.BackColor, "and the form itself"

' The user edits: one value the field refuses reaches the script with the field's own error,
' and every other value is read all the same.
txt.Text = "Eva"
msk.Text = "12a"
chk.Value = 0
cbo.ListIndex = 0
On Error Resume Next
svc.FillCeldosForm frm, row, "Cliente"
text = Err.Number & " " & Err.Description
On Error GoTo 0
CheckEqual Left(text, 12), "-2147221504 ", "the field's own error reaches the script"
Check InStr(text, "Codigo") > 0, "naming the field: " & text
CheckEqual row.Item("Nombre").Value & "," & row.Item("Activo").Value & "," & row.Item("Ciudad").Value, _
    "Eva,False,10", "the other controls were read back"
msk.Text = "120"
svc.FillCeldosForm frm, row, "Cliente"
CheckEqual row.Item("Codigo").Value, CLng(120), "once corrected, the value lands, converted to the field's type"

' The refresh rule: only fields changed since they were taken as saved are written again.
row.Updated
row.Item("Nombre").Value = "Luz"
txt.Text = "typed"
msk.Text = "typed"
svc.FillForm frm, row, "Cliente", True
CheckEqual txt.Text & "," & msk.Text, "Luz,typed", "FillForm with Refresh rewrites changed fields only"

' The platform's picture loader: a 1 x 1 bitmap written here and loaded through the field.
Set fso = CreateObject("Scripting.FileSystemObject")
path = fso.BuildPath(fso.GetSpecialFolder(2), "celdo-test.bmp")
Set bmp = fso.CreateTextFile(path, True)
bmp.Write "BM" & Chr(58) & String(7, Chr(0)) & Chr(54) & String(3, Chr(0)) & Chr(40) & String(3, Chr(0)) & _
    Chr(1) & String(3, Chr(0)) & Chr(1) & String(3, Chr(0)) & Chr(1) & Chr(0) & Chr(24) & String(5, Chr(0)) & _
    Chr(4) & String(19, Chr(0)) & Chr(16) & Chr(32) & Chr(48) & Chr(0)
bmp.Close
row.Item("Foto").RowSource = path
row.Item("Foto").Value = "x"
svc.FillForm frm, row, "Cliente"
CheckEqual img.Picture.Type, 1, "a bitmap loaded by the platform's picture loader"
row.Item("Foto").RowSource = path & ".missing"
Set img.Picture = Nothing
svc.FillForm frm, row, "Cliente"
Check img.Picture Is Nothing, "a missing picture file is skipped quietly"
fso.DeleteFile path

' ---- Transfers --------------------------------------------------------------------------------

Set lv1 = New ListViewDouble
Set lv2 = New ListViewDouble
lv1.Columns Array("A", "B", "C")
lv2.Columns Array("A", "B", "C")
svc.AddListItem probe.Disguise(lv1, "ListView"), "7", -1, -1, "a!b!c", "!", "t"
svc.SawpListView lv1.ListItems.Item(1), probe.Disguise(lv1, "ListView"), probe.Disguise(lv2, "ListView")
CheckEqual lv1.ListItems.Count & " " & lv2.ListItems.Listing, "0 K7:a|b|c", "SawpListView with its separator omitted"
Set gridRaw = New DataGridDouble
Set grid = probe.Disguise(gridRaw, "SSDBGrid")
svc.SawpListViewGrid lv2.ListItems.Item(1), probe.Disguise(lv2, "ListView"), grid
CheckEqual gridRaw.Lines & " " & gridRaw.FieldSeparator, "[a!b!c] !", "SawpListViewGrid"
i = 3
svc.SawpGridListView i, grid, probe.Disguise(lv2, "ListView"), "#"
CheckEqual lv2.ListItems.Listing & " row " & gridRaw.Row & " removed " & gridRaw.Removed, ":v0|v1|v2 row 3 removed 3", _
    "SawpGridListView reads the grid's row through its columns"
ReDim rows(1, 1)
rows(0, 0) = 1
rows(1, 0) = "a"
rows(0, 1) = 2
rows(1, 1) = Null
svc.FillGrid grid, rows
CheckEqual gridRaw.Lines, "[1!a][2!]", "FillGrid"

Set da = New GridDataAccessDouble
Set svc.Ex = da
da.HayConexion = False
svc.ExecFillGrid grid, "Select", exOpenStatic
CheckEqual gridRaw.Lines, "[1!a][2!]", "ExecFillGrid without a connection leaves the grid alone"
da.HayConexion = True
svc.ExecFillGrid grid, "Select", exOpenStatic
CheckEqual gridRaw.Cols & " " & gridRaw.Columns.Item(0).Caption & " " & gridRaw.Lines, "1 Número [5]", _
    "ExecFillGrid lays the columns out from the header and fills the grid"

Set svc = Nothing
Set probe = Nothing
Finish
