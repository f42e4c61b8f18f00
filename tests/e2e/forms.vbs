' Forms, lists, image combos, toolbars and list-view transfers from VBScript against real COM,
' through the script doubles of the controls disguised by the test probe. The rules have native
' tests (tests/services); this keeps what only a script host shows: the form's controls walked
' through the platform's own enumerator, nested calls into the host's objects, a field's refusal
' reaching the script, the platform's picture loader, and every member called once by name.
' include: ../../examples/doubles/controls.vbs
' include: shared/services.vbs

' A data grid: lines as added; its current row read through three columns valued v0, v1, v2.
Class GridColumnDouble
    Public Value
    Public Caption
    Public Width
End Class

Class DataGridDouble
    Public FieldSeparator
    Public Lines
    Public Row
    Public Cols
    Public Columns
    Public Removed
    Private Sub Class_Initialize()
        Dim i, column
        Set Columns = CreateObject("Scripting.Dictionary")
        For i = 0 To 2
            Set column = New GridColumnDouble
            column.Value = "v" & i
            Columns.Add i, column
        Next
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

Dim svc, probe, da, raw, row, frm, txt, msk, cbo, img, other, fso, bmp, path, lv1, lv2
Dim icbo, tb, index, grid, gridRaw, i

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")
Set da = New DataAccessDouble
da.Data = Matrix(2, Array(10, "Rosario", 20, "Mendoza"))
Set svc.Ex = probe.Disguise(da, "DataAccess")

' ---- Lists, image combos and toolbars ---------------------------------------------------------

Set raw = New ListDouble
svc.FillListDB probe.Disguise(raw, "ComboBox"), Matrix(3, Array(7, "Ana", "Gómez"))
CheckEqual raw.Listing, "Ana~Gómez/7", "a script's row: its text joined by tabs, its identifier in ItemData"
Set raw = New ImageComboDouble
svc.FillImageCombo probe.Disguise(raw, "icbo"), "Rojo;Verde"
CheckEqual raw.ComboItems.Listing, ":Rojo*; :Verde", "an image combo from a value list, its first item selected"
Set raw = New ToolbarDouble
svc.FillToolBar probe.Disguise(raw, "Toolbar"), _
    Matrix(4, Array(1, "Nuevo", 0, "Crea un registro", "Save", "Guardar", -1, "Guarda")), True
CheckEqual raw.Buttons.Listing, "K1:Nuevo img0 tip Crea un registro; Save:Guardar tip Guarda", _
    "buttons keyed, with image and tooltip; an image below 0 left unset"

' The other members of the family, each once.
Set raw = New ListDouble
svc.ExecFillListDB probe.Disguise(raw, "ComboBox"), "  select Id, Nombre From Ciudades"
CheckEqual raw.Listing & " after " & da.Received, "Rosario/10; Mendoza/20 after   select Id, Nombre From Ciudades,5273,0,False,Missing,Missing,Missing", _
    "ExecFillListDB runs its query in the short form"
Set raw = New ImageComboDouble
Set icbo = probe.Disguise(raw, "icbo")
svc.AddComboItem icbo, "8", "Eva", 2
CheckEqual raw.ComboItems.Listing, "K8:Eva img2", "AddComboItem keyed by the K rule, its other images left out"
Set raw = New ToolbarDouble
Set tb = probe.Disguise(raw, "Toolbar")
svc.AddButtonItem tb, "Save", "Guardar"
index = "Save"
svc.FillButtonMenus tb, index, Matrix(2, Array(1, "Como...", "All", "Todo")), True
svc.AddButtonMenuItem tb, index, "", "Otro"
CheckEqual raw.Buttons.Listing & " " & raw.Buttons.Item("Save").ButtonMenus.Shown, "Save:Guardar [K1:Como...][All:Todo][:Otro]", _
    "AddButtonItem, and the button's menu filled and added to by key"

' ---- A form both ways -------------------------------------------------------------------------

Set row = CreateObject("Celdo.clsCeldos")
row.Add "Codigo", "", exLong, , , True, , , 12
row.Add "Nombre", "", exText, 40, , , , , "Ana"
row.Add "Ciudad", "", exLong, , , , , , 20
row.Add "Pais", "", exLong, , , , , , 54
row.Add "Foto", "", exText
row.Item("Ciudad").RowSource = "Select Id, Nombre From Ciudades Where Pais = [Pais]"

Set frm = New FormDouble
Set txt = frm.Place(New ControlDouble, "TextBox", "txtNombre", "Cliente")
Set msk = frm.Place(New ControlDouble, "MaskEdBox", "mskCodigo", "Cliente")
Set cbo = frm.Place(New ListDouble, "ComboBox", "cboCiudad", "Cliente")
Set img = frm.Place(New ControlDouble, "Image", "imgFoto", "Cliente")
Set other = frm.Place(New ControlDouble, "TextBox", "txtNombre2", "Otro")
other.DataField = "Nombre"

svc.FillForm frm, row, "Cliente"
CheckEqual txt.Text & "|" & txt.MaxLength & "|" & msk.Text, "Ana|40|12", "FillForm writes the controls the form's enumerator gives"
CheckEqual cbo.Listing & " at " & cbo.ListIndex, "Rosario/10; Mendoza/20 at 1", _
    "a combo filled from its field's query, with the row's values replaced, and the value chosen"
CheckEqual da.Received, "Select Id, Nombre From Ciudades Where Pais = 54", "the query the host was asked"
Check IsEmpty(other.Text), "a control of another group is left alone"
CheckEqual img.Picture.Type, 0, "an empty picture for a field without a picture file"

CheckEqual svc.FindRowSource(row.Item("Ciudad"), row), "Mendoza", "FindRowSource: what the field's value stands for"
txt.BackColor = &H8000000F
svc.PaintForm frm
CheckEqual txt.BackColor & "," & frm.BackColor, svc.CellBackColor & "," & svc.BackColor, _
    "PaintForm repaints a control in the system colours, and the form"

' The user edits: the value the field refuses reaches the script with the field's own error,
' and every other control is read all the same.
txt.Text = "Eva"
msk.Text = "12a"
cbo.ListIndex = 0
On Error Resume Next
svc.FillCeldosForm frm, row, "Cliente"
CheckError -2147221504, "Celdo_Codigo", "Tipo de dato no valido para : Codigo", "the field's own error reaches the script"
On Error GoTo 0
CheckEqual row.Item("Nombre").Value & "," & row.Item("Ciudad").Value, "Eva,10", "the other controls were read back"

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

' ---- A transfer between list views --------------------------------------------------------------

Set lv1 = New ListViewDouble
Set lv2 = New ListViewDouble
lv1.Columns Array("A", "B", "C")
lv2.Columns Array("A", "B", "C")
svc.AddListItem probe.Disguise(lv1, "ListView"), "7", -1, -1, "a!b!c", "!", "t"
svc.SawpListView lv1.ListItems.Item(1), probe.Disguise(lv1, "ListView"), probe.Disguise(lv2, "ListView")
CheckEqual lv1.ListItems.Count & " " & lv2.ListItems.Listing, "0 K7:a|b|c", "SawpListView with its separator left out"

' ---- Data grids ---------------------------------------------------------------------------------

Set gridRaw = New DataGridDouble
Set grid = probe.Disguise(gridRaw, "SSDBGrid")
svc.SawpListViewGrid lv2.ListItems.Item(1), probe.Disguise(lv2, "ListView"), grid
CheckEqual gridRaw.Lines & " " & gridRaw.FieldSeparator & " " & lv2.ListItems.Count, "[a!b!c] ! 0", _
    "SawpListViewGrid moves the item into the grid"
i = 3
svc.SawpGridListView i, grid, probe.Disguise(lv2, "ListView"), "#"
CheckEqual lv2.ListItems.Listing & " row " & gridRaw.Row & " removed " & gridRaw.Removed, ":v0|v1|v2 row 3 removed 3", _
    "SawpGridListView reads the grid's row through its columns"
svc.FillGrid grid, Matrix(2, Array(1, "a", 2, Null))
CheckEqual gridRaw.Lines, "[1!a][2!]", "FillGrid: a line a row, Null as the empty text"
Set da.GiveHeader = CreateObject("Celdo.clsCeldos")
da.GiveHeader.Add "Id", "", exLong
da.GiveHeader.Item("Id").Caption = "Número"
da.Data = Matrix(1, Array(5))
svc.ExecFillGrid grid, "Select", exOpenStatic
CheckEqual gridRaw.Cols & " " & gridRaw.Columns.Item(0).Caption & " " & gridRaw.Lines, "1 Número [5]", _
    "ExecFillGrid lays the columns out from the host's header and fills the grid"

Set svc = Nothing
Set probe = Nothing
Finish
