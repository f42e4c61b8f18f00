' Forms, lists, image combos, toolbars, list-view transfers and data grids from VBScript against
' real COM, through the control doubles disguised by the test probe. The rules have native tests
' (tests/services); this keeps what only a script host shows: the form's controls walked through
' the platform's enumerator, calls into the host's objects, a field's refusal reaching the script,
' the platform's picture loader, and every member called once by name.
' include: ../../examples/doubles/controls.vbs
' include: shared/services.vbs

' A data grid that is its own Columns: lines as added, rows removed, and columns by index, each
' valued "v" & its index. RemoveAll empties the lines; columns stay until Add makes them again.
Class GridColumnDouble
    Public Value
    Public Caption
    Public Width
End Class

Class DataGridDouble
    Public FieldSeparator
    Public Lines
    Public Removed
    Public Row
    Public Cols
    Public Width
    Private columns_
    Private Sub Class_Initialize(): Set columns_ = CreateObject("Scripting.Dictionary"): Add 0: Add 1: Add 2: End Sub
    Public Property Get Columns(): Set Columns = Me: End Property
    Public Sub Add(i)
        If columns_.Exists(i) Then columns_.Remove i
        columns_.Add i, New GridColumnDouble
        columns_(i).Value = "v" & i
    End Sub
    Public Property Get Item(i): Set Item = columns_(i): End Property
    Public Sub AddItem(line): Lines = Lines & "[" & line & "]": End Sub
    Public Sub RemoveItem(i): Removed = Removed & i: End Sub
    Public Sub RemoveAll(): Lines = "": End Sub
End Class

Dim svc, probe, da, raw, row, frm, txt, msk, cbo, img, other, fso, path, lv1, lv2, tb, index, grid, gridRaw, i

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")
Set da = New DataAccessDouble
da.Data = Matrix(2, Array(10, "Rosario", 20, "Mendoza"))
Set svc.Ex = probe.Disguise(da, "DataAccess")

' ---- Lists, image combos and toolbars ---------------------------------------------------------

Set raw = New ListDouble
svc.FillListDB probe.Disguise(raw, "ComboBox"), Matrix(3, Array(7, "Ana", "Gómez"))
CheckEqual raw.Listing, "Ana~Gómez/7", "a script's row: its text joined by tabs, its identifier in ItemData"
svc.ExecFillListDB probe.Disguise(raw, "ComboBox"), "  select Id, Nombre From Ciudades"
CheckEqual raw.Listing & " after " & da.Received, "Rosario/10; Mendoza/20 after   select Id, Nombre From Ciudades,5273,0," & False & ",Missing,Missing,Missing", _
    "ExecFillListDB runs its query in the short form"
svc.FindItemData 20, raw
i = raw.ListIndex
svc.FindListIndex "rosario", raw
CheckEqual i & "," & raw.ListIndex, "1,0", "FindItemData and FindListIndex select by ItemData and by text"
Set raw = New ImageComboDouble
svc.FillImageCombo probe.Disguise(raw, "icbo"), "Rojo;Verde"
svc.AddComboItem probe.Disguise(raw, "icbo"), "8", "Eva", 2
CheckEqual raw.ComboItems.Listing, ":Rojo*; :Verde; K8:Eva img2", "an image combo from a value list, and an item keyed by the K rule"
Set raw = New ToolbarDouble
Set tb = probe.Disguise(raw, "Toolbar")
svc.FillToolBar tb, Matrix(4, Array(1, "Nuevo", 0, "Crea un registro")), True
svc.AddButtonItem tb, "Save", "Guardar"
index = "Save"
svc.FillButtonMenus tb, index, Matrix(2, Array(1, "Como...", "All", "Todo")), True
svc.AddButtonMenuItem tb, index, "", "Otro"
CheckEqual raw.Buttons.Listing & " " & raw.Buttons.Item("Save").ButtonMenus.Shown, _
    "K1:Nuevo img0 tip Crea un registro; Save:Guardar [K1:Como...][All:Todo][:Otro]", "buttons keyed, and a button's menu filled and added to"

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
Check svc.IsControl(txt) And Not svc.IsControl(row), "IsControl tells a control on the form"

svc.FillForm frm, row, "Cliente"
CheckEqual txt.Text & "|" & txt.MaxLength & "|" & msk.Text & "|" & other.Text, "Ana|40|12|", _
    "FillForm writes the controls of its group that the form's enumerator gives"
CheckEqual cbo.Listing & " at " & cbo.ListIndex & " for " & da.Received, _
    "Rosario/10; Mendoza/20 at 1 for Select Id, Nombre From Ciudades Where Pais = 54", "a combo filled from its field's query, the row's values in it"
CheckEqual img.Picture.Type, 0, "an empty picture for a field without a picture file"
CheckEqual svc.FindRowSource(row.Item("Ciudad"), row), "Mendoza", "FindRowSource: what the field's value stands for"
txt.BackColor = &H8000000F
svc.PaintForm frm
CheckEqual txt.BackColor & "," & frm.BackColor, svc.CellBackColor & "," & svc.BackColor, "PaintForm repaints a control and the form"

' The value the field refuses reaches the script with the field's own error; every other
' control is read all the same.
txt.Text = "Eva"
msk.Text = "12a"
cbo.ListIndex = 0
On Error Resume Next
svc.FillCeldosForm frm, row, "Cliente"
CheckError -2147221504, "Celdo_Codigo", "Tipo de dato no valido para : Codigo", "the field's own error reaches the script"
On Error GoTo 0
CheckEqual row.Item("Nombre").Value & "," & row.Item("Ciudad").Value, "Eva,10", "the other controls were read back"

' The platform's picture loader: a 1 x 1 bitmap written here and loaded through the field; a
' missing file is skipped quietly.
Set fso = CreateObject("Scripting.FileSystemObject")
path = fso.BuildPath(fso.GetSpecialFolder(2), "celdo-test.bmp")
fso.CreateTextFile(path, True).Write "BM" & Chr(58) & String(7, Chr(0)) & Chr(54) & String(3, Chr(0)) & Chr(40) & _
    String(3, Chr(0)) & Chr(1) & String(3, Chr(0)) & Chr(1) & String(3, Chr(0)) & Chr(1) & Chr(0) & Chr(24) & _
    String(5, Chr(0)) & Chr(4) & String(19, Chr(0)) & Chr(16) & Chr(32) & Chr(48) & Chr(0)
row.Item("Foto").RowSource = path
row.Item("Foto").Value = "x"
svc.FillForm frm, row, "Cliente"
CheckEqual img.Picture.Type, 1, "a bitmap loaded by the platform's picture loader"
row.Item("Foto").RowSource = path & ".missing"
Set img.Picture = Nothing
svc.FillForm frm, row, "Cliente"
Check img.Picture Is Nothing, "a missing picture file is skipped quietly"
fso.DeleteFile path

' ---- Transfers between list views and data grids, and data grids ------------------------------

Set lv1 = New ListViewDouble
Set lv2 = New ListViewDouble
lv1.Columns Array("A", "B", "C")
lv2.Columns Array("A", "B", "C")
svc.AddListItem probe.Disguise(lv1, "ListView"), "7", -1, -1, "a!b!c", "!", "t"
svc.SawpListView lv1.ListItems.Item(1), probe.Disguise(lv1, "ListView"), probe.Disguise(lv2, "ListView")
CheckEqual lv1.ListItems.Count & " " & lv2.ListItems.Listing, "0 K7:a|b|c", "SawpListView with its separator left out"
Set gridRaw = New DataGridDouble
Set grid = probe.Disguise(gridRaw, "SSDBGrid")
svc.SawpListViewGrid lv2.ListItems.Item(1), probe.Disguise(lv2, "ListView"), grid
CheckEqual gridRaw.Lines & " " & gridRaw.FieldSeparator & " " & lv2.ListItems.Count, "[a!b!c] ! 0", "SawpListViewGrid moves the item into the grid"
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
CheckEqual gridRaw.Cols & " " & gridRaw.Item(0).Caption & " " & gridRaw.Lines, "1 Número [5]", _
    "ExecFillGrid lays the columns out from the host's header and fills the grid"
Set other = CreateObject("Scripting.Dictionary")
other.Add 0, "Uno"
other.Add 1, "Dos"
svc.DBGridColumnHeaders grid, other
CheckEqual gridRaw.Item(0).Caption & gridRaw.Item(1).Caption, "UnoDos", "DBGridColumnHeaders captions the columns from the host's collection"

Set svc = Nothing
Set probe = Nothing
Finish
