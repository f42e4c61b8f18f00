' The helpers, list views, flex grids and trees from VBScript against real COM, through script
' doubles disguised by the test probe. The rules have native tests (tests/services); this keeps
' what only a script host shows: arguments written back by reference both ways, omitted ones, a
' control's error passed on or swallowed, the data-access object's lifetime, every member by name.
' include: ../../examples/doubles/controls.vbs
' include: shared/services.vbs

' A flex grid with one fixed row and column. Cells are kept by "row,col"; TextMatrix refuses
' once Writes reaches RefuseAfter; AddItem logs "[item@index]", tabs shown as "~"; Levels logs
' each row's RowData, and "h" for a row hidden.
Class FlexGridDouble
    Public Redraw
    Public BackColorBkg
    Public GridColorFixed
    Public GridColor
    Public ForeColor
    Public FixedRows
    Public FixedCols
    Public Rows
    Public Cols
    Public Row
    Public Col
    Public ColSel
    Public FillStyle
    Public CellBackColor
    Public RowHeightMin
    Public FormatString
    Public Writes
    Public RefuseAfter
    Public Added
    Public Levels
    Private cells_
    Private Sub Class_Initialize()
        Set cells_ = CreateObject("Scripting.Dictionary")
        FixedRows = CLng(1): FixedCols = CLng(1): Rows = CLng(1): Cols = CLng(2): Writes = 0: RefuseAfter = -1
    End Sub
    Public Property Let TextMatrix(r, c, v)
        If Writes = RefuseAfter Then Err.Raise 380, "MSFlexGrid", "Invalid property value"
        Writes = Writes + 1
        cells_(r & "," & c) = v
    End Property
    Public Property Get TextMatrix(r, c): TextMatrix = cells_(r & "," & c): End Property
    Public Property Let ColWidth(i, v): End Property
    Public Property Let RowData(r, v): Levels = Levels & v: End Property
    Public Property Let RowHeight(r, v): Levels = Levels & "h": End Property
    Public Sub AddItem(Item, Index)
        Added = Added & "[" & Replace(Item, vbTab, "~")
        If VarType(Index) <> vbError Then Added = Added & "@" & Index
        Added = Added & "]"
        Rows = CLng(Rows + 1)
    End Sub
End Class

' A tree view that is its own Nodes, listing them in Shown as "Key", "Key<Relative" and "/Image"
' as they are added; a key twice is refused, as the control refuses it.
Class TreeDouble
    Public Shown
    Private nodes_
    Private Sub Class_Initialize(): Set nodes_ = CreateObject("Scripting.Dictionary"): End Sub
    Public Property Get Nodes(): Set Nodes = Me: End Property
    Public Sub Clear(): Shown = "": nodes_.RemoveAll: End Sub
    Public Property Get Count(): Count = nodes_.Count: End Property
    Public Property Get Item(i): Dim all: all = nodes_.Items: Set Item = all(i - 1): End Property
    Public Function Add(Relative, Relationship, Key, Text, Image, SelectedImage)
        Dim n
        If nodes_.Exists(Key) Then Err.Raise 35602, "TreeView", "Key is not unique in collection"
        Set n = New ElementDouble
        n.Key = Key
        n.Text = Text
        nodes_.Add Key, n
        Set Add = n
        Shown = Trim(Shown & " " & Key)
        If VarType(Relative) <> vbError Then Shown = Shown & "<" & Relative
        If VarType(Image) <> vbError Then Shown = Shown & "/" & Image
    End Function
End Class

' A list view as ListViewColumnClick sorts it.
Class SortingDouble
    Public SortOrder
    Public SortKey
    Public Sorted
End Class

Dim svc, probe, da, header, outParams, params, rows, data, raw, g, idx, tvw, node, keys

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")
Set da = New DataAccessDouble
Set svc.Ex = da
svc.ForeColor = 255
da.FormatShowDate = "dd/mm/yy"
CheckEqual svc.ForeColor & "|" & svc.CustomFormat & "|" & svc.nvl(Null, 5) & "|" & svc.BuildFormat(2.5, "0.00") & "|" & _
    svc.MoveSpin(9, 10, 1, 5) & "|" & svc.GetTag("a" & Chr(187) & "b" & Chr(187), 2) & "|" & svc.LetTag("x187y", 1, "N"), _
    "255|dd/MM/yy|5|2" & Mid(0.5, 2, 1) & "50|10|b|N187y", "each helper by name"

' ---- List views: the caller's own data-access object, by reference both ways ------------------

Set header = CreateObject("Celdo.clsCeldos")
header.Add "Id", "", exLong
header.Add "Name", "", exText
Set outParams = CreateObject("Celdo.clsCeldos")
Set da.GiveHeader = header
Set da.GiveParameters = outParams
da.Status = -1
da.Data = Matrix(2, Array(1, "Ana"))
Set raw = New ListViewDouble
Set params = Nothing
rows = 0
svc.ExecFillListView probe.Disguise(raw, "_ListView"), 0, "Select", exOpenStatic, 2, "!", params, rows, False, False
' Booleans and numbers reach the doubles' texts in the settings' own words and decimal sign.
CheckEqual da.Received & " as " & da.Types, "Select,5273,0," & True & ",2," & True & ",0 as 8,3,3,9,2,9,3", _
    "every argument, typed as the service declares them"
CheckEqual rows & " " & (params Is outParams) & " " & raw.ListItems.Listing & " under " & raw.ColumnHeaders.Listing, _
    "25 " & True & " :1|Ana| under Id:Id; Name:Name", "the parameters, row limit and header the host wrote, whatever the status"
svc.ExecFillListView probe.Disguise(New ListViewDouble, "_ListView"), 0, "Select", exOpenStatic
CheckEqual da.Received, "Select,5273,0," & True & ",0," & True & ",0", "omitted arguments go as their defaults"
Set raw = New ListViewDouble
svc.ListViewColumnHeaders probe.Disguise(raw, "ListView"), "Uno,1000;Dos"
svc.FillListView probe.Disguise(raw, "ListView"), 0, Matrix(2, Array(1, "a", 2, "b"))
CheckEqual raw.ColumnHeaders.Listing & " " & raw.ListItems.Listing, ":Uno; :Dos :1|a|; :2|b|", _
    "ListViewColumnHeaders from a text, FillListView from a script's rows"
Set raw = New SortingDouble
raw.SortOrder = 0
Set node = New ElementDouble
node.Index = 3
svc.ListViewColumnClick raw, node
CheckEqual raw.SortOrder & raw.SortKey & raw.Sorted, "12" & True, "ListViewColumnClick sorts descending by the clicked column"
' Without a connection nothing is fetched, so the grid is never reached (no native test of
' ExecFillGrid covers its own check).
da.HayConexion = False
da.Received = Empty
svc.ExecFillGrid Nothing, "Select", exOpenStatic
Check IsEmpty(da.Received), "ExecFillGrid asks nothing without a connection"
da.HayConexion = True

' ---- Flex grids --------------------------------------------------------------------------------

Set header = CreateObject("Celdo.clsCeldos")
header.Add "Price", "", exDouble
header.Add "Name", "", exText
header.Item(1).Format = "0.00"
data = Matrix(2, Array(2.5, "x", 1, Null))
Set raw = New FlexGridDouble
Set g = probe.Disguise(raw, "MSFlexGrid")
svc.FillFlexGrid g, data, header
CheckEqual raw.TextMatrix(1, 1) & ":" & raw.TextMatrix(1, 2) & ";" & raw.TextMatrix(2, 1) & ":" & raw.TextMatrix(2, 2) & _
    " redrawn " & raw.Redraw, Replace("2.50:x;1.00:", ".", Mid(0.5, 2, 1)) & " redrawn " & True, _
    "cells written through the grid's indexed Property Let"
CheckEqual VarType(data(1, 1)) & "[" & data(1, 1) & "]", "8[]", "the Null is replaced in the caller's own array"
' On the filled grid (3 rows): Index written back, and passed on as omitted when left out.
idx = -1
CheckEqual svc.AddFlexItem(g, "a" & vbTab & "b", , idx) & " " & idx, "3 3", "AddFlexItem answers the new row and writes it into Index"
CheckEqual svc.AddFlexItem(g, "c") & raw.Added, "4[~a~b][~c]", "without an index: at the end, AddItem given none"
CheckEqual svc.FlexItemUpdateRow(g, 4, "d;e", header) & raw.TextMatrix(4, 2), "4e", "FlexItemUpdateRow rewrites a row's cells"
Set raw = New FlexGridDouble
Set g = probe.Disguise(raw, "MSFlexGrid")
svc.FlexGridHeader g, header
raw.Rows = CLng(2)
idx = svc.RemoveFlexItem(g, 1)
svc.FlexGridClipBoard g
CheckEqual raw.Cols & " " & raw.FormatString & " " & idx & " " & IsEmpty(raw.Row), "3 |Price|Name 1 " & True, _
    "FlexGridHeader lays out a column a field; RemoveFlexItem cuts the last row off; FlexGridClipBoard leaves a grid without rows alone"
Set da.GiveHeader = header
da.Status = 0
da.Data = Matrix(2, Array(7, "y"))
svc.ExecFillFlexGrid g, "Select", exOpenStatic
CheckEqual raw.TextMatrix(1, 1) & raw.TextMatrix(1, 2), "7" & Mid(0.5, 2, 1) & "00y", "ExecFillFlexGrid fills the grid formatted by the host's header"
Set raw = New FlexGridDouble
raw.RefuseAfter = 1
On Error Resume Next
svc.FillFlexGrid probe.Disguise(raw, "MSFlexGrid"), data, header
CheckError 0, "", "", "FillFlexGrid does not pass on the grid's error"
On Error GoTo 0
CheckEqual raw.Writes & "," & raw.Redraw, "1," & False, "the fill stops there, Redraw still off"

' ---- Trees -------------------------------------------------------------------------------------

Set raw = New TreeDouble
Set tvw = probe.Disguise(raw, "TreeView")
' key, parent, text: a child before its parent, and an orphan.
svc.FillTreeView tvw, Matrix(3, Array(2, 1, "Ventas", 1, Null, "Cuentas", 9, 8, "Huérfana"))
CheckEqual raw.Shown, "K1 K2<K1 K9", "a script's rows placed parent first, the images left out"
Set node = svc.AddRootNode(tvw, "50", "Cincuenta", , , "t")
CheckEqual node.Key & " " & node.Tag, "K50 t", "AddRootNode answers the node, keyed and tagged"
' Under Wine a script class's error leaves COM without its source and text: the number is compared.
On Error Resume Next
svc.AddRootNode tvw, "50", "Otra vez"
CheckError 35602, "", "", "AddRootNode passes on the tree's refusal"
On Error GoTo 0
Set node = svc.AddNode(tvw, "50", "51", "Hija")
keys = svc.GetNodes(tvw, False)
CheckEqual node.Key & " " & Right(raw.Shown, 7) & " " & UBound(keys) & ":" & keys(0) & "," & keys(4), "K51 K51<K50 4:1,51", _
    "AddNode places the node under its parent's key; GetNodes answers every key as the host gave it"
' The data-access object is reached through the probe from here on, which pads the short calls.
Set svc.Ex = probe.Disguise(da, "DataAccess")
da.Data = Matrix(3, Array(1, Null, "Raíz", 2, 1, "Hoja"))
svc.ExecFillTreeView tvw, "Select", exOpenStatic
CheckEqual raw.Shown, "K1 K2<K1", "ExecFillTreeView clears the tree and fills it from the host's rows"
Set raw = New FlexGridDouble
data = da.Data
svc.FillFlexGridTree probe.Disguise(raw, "MSFlexGrid"), data
CheckEqual raw.TextMatrix(1, 1) & "|" & raw.TextMatrix(2, 1) & "|" & raw.Levels, "+ Raíz|      Hoja|01h", _
    "FillFlexGridTree: the outline indented by level, levels in RowData, the second level hidden"
Set raw = New FlexGridDouble
svc.ExecFillFlexGridTree probe.Disguise(raw, "MSFlexGrid"), "Select", exOpenStatic
CheckEqual raw.TextMatrix(2, 1), "      Hoja", "ExecFillFlexGridTree fills the outline from the host's rows"

' ---- Release -----------------------------------------------------------------------------------

Set da = Nothing
CheckEqual released, 0, "the service holds its data-access object"
Set svc = Nothing
CheckEqual released, 1, "and lets it go with itself"
Set probe = Nothing
Finish
