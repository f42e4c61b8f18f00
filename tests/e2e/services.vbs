' The service from VBScript against real COM, through script doubles disguised by the test
' probe, where only a script host shows it: arguments written back by reference both ways (by
' the host's data-access object into the service, by the service into the script's variables
' and array), omitted arguments reaching a script's method as missing, a control's error passed
' on to the script, a script's data arrays, and the data-access object's lifetime. The rules
' have native tests (tests/services); forms.vbs has the forms.
' include: ../../examples/doubles/controls.vbs
' include: shared/services.vbs

' A flex grid with one fixed row and column. Cells are kept by "row,col"; AddItem logs
' "[item@index]", tabs shown as "~".
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
    Public Added
    Private cells_
    Private Sub Class_Initialize()
        Set cells_ = CreateObject("Scripting.Dictionary")
        FixedRows = CLng(1): FixedCols = CLng(1): Rows = CLng(1): Cols = CLng(2)
    End Sub
    Public Property Let TextMatrix(r, c, v): cells_(r & "," & c) = v: End Property
    Public Property Get TextMatrix(r, c): TextMatrix = cells_(r & "," & c): End Property
    Public Property Let ColWidth(i, v): End Property
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

Dim svc, probe, da, header, outParams, params, rows, data, raw, g, idx, tvw, node

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")
Set da = New DataAccessDouble
Set svc.Ex = da

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

' ---- Release -----------------------------------------------------------------------------------

Set da = Nothing
CheckEqual released, 0, "the service holds its data-access object"
Set svc = Nothing
CheckEqual released, 1, "and lets it go with itself"
Set probe = Nothing
Finish
