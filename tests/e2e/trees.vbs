' Trees from VBScript against real COM, through script doubles disguised by the test probe: rows
' out of order and orphans as a script host hands them, omitted images, a tree's refusal reaching
' the script, keys given back as an array, parameters written back by ExecFillTreeView, and the
' flex-grid outline.

Class NodeDouble
    Public Key
    Public Text
    Public Tag
    Public Checked
End Class

' Nodes listed as "Key", "Key<Relative" and "/Image" as they are added; a key twice is refused.
Class NodesDouble
    Public Shown
    Private nodes_
    Private Sub Class_Initialize()
        Set nodes_ = CreateObject("Scripting.Dictionary")
        Shown = ""
    End Sub
    Public Sub Clear()
        nodes_.RemoveAll
        Shown = ""
    End Sub
    Public Function Add(Relative, Relationship, Key, Text, Image, SelectedImage)
        Dim n
        If nodes_.Exists(Key) Then Err.Raise 35602, "TreeView", "Key is not unique in collection"
        Set n = New NodeDouble
        n.Key = Key
        n.Text = Text
        n.Checked = False
        nodes_.Add Key, n
        If Shown <> "" Then Shown = Shown & " "
        Shown = Shown & Key
        If VarType(Relative) <> vbError Then Shown = Shown & "<" & Relative
        If VarType(Image) <> vbError Then Shown = Shown & "/" & Image
        Set Add = n
    End Function
    Public Property Get Count()
        Count = nodes_.Count
    End Property
    Public Property Get Item(i)
        Dim keys
        keys = nodes_.Keys
        Set Item = nodes_.Item(keys(i - 1))
    End Property
End Class

Class TreeViewDouble
    Public Nodes
    Private Sub Class_Initialize()
        Set Nodes = New NodesDouble
    End Sub
End Class

' The host's data-access object: the tree's short ExecFillArray, parameters answered by the host.
Class DataAccessDouble
    Public HayConexion
    Public Received
    Public Answer
    Public Function ExecFillArray(ByRef query, ByRef mode, ByRef status, ByRef header, ByRef absent, ByRef params)
        Dim rows
        Received = query & "," & mode & "," & (header Is Nothing) & "," & (VarType(absent) = vbError)
        If IsObject(params) Then Set params = Answer
        ReDim rows(2, 0)
        rows(0, 0) = 1
        rows(1, 0) = ""
        rows(2, 0) = "Raíz"
        ExecFillArray = rows
    End Function
End Class

' A flex grid with one fixed row and column: cells by "row,col", RowData and RowHeight by row.
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
    Private cells_
    Private Sub Class_Initialize()
        Set cells_ = CreateObject("Scripting.Dictionary")
        FixedRows = CLng(1)
        FixedCols = CLng(1)
    End Sub
    Public Property Let TextMatrix(r, c, v)
        cells_(r & "," & c) = v
    End Property
    Public Property Get TextMatrix(r, c)
        TextMatrix = cells_(r & "," & c)
    End Property
    Public Property Let RowData(r, v)
        cells_("data" & r) = v
    End Property
    Public Property Get RowData(r)
        RowData = cells_("data" & r)
    End Property
    Public Property Let RowHeight(r, v)
        cells_("height" & r) = v
    End Property
    Public Property Get RowHeight(r)
        RowHeight = cells_("height" & r)
    End Property
    Public Property Let ColWidth(c, v)
    End Property
End Class

' Wine's VBScript has no Join.
Function Joined(items)
    Dim i
    Joined = ""
    For i = 0 To UBound(items)
        If i > 0 Then Joined = Joined & ","
        Joined = Joined & items(i)
    Next
End Function

Dim svc, probe, raw, tvw, rows, keys, node, da, params, answer, gridRaw, text, r

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")
Set raw = New TreeViewDouble
Set tvw = probe.Disguise(raw, "TreeView")

' key, parent, text: a child before its parent, a grandchild, an orphan.
ReDim rows(2, 3)
rows(0, 0) = 2
rows(1, 0) = 1
rows(2, 0) = "Ventas"
rows(0, 1) = 1
rows(1, 1) = Null
rows(2, 1) = "Cuentas"
rows(0, 2) = 3
rows(1, 2) = 2
rows(2, 2) = "Contado"
rows(0, 3) = 9
rows(1, 3) = 8
rows(2, 3) = "Huérfana"
svc.FillTreeView tvw, rows
CheckEqual raw.Nodes.Shown, "K1 K2<K1 K3<K2 K9", "children under their parents, an orphan as a root, images omitted"
svc.FillTreeView tvw, rows, 3
CheckEqual raw.Nodes.Shown, "K1/3 K2<K1/3 K3<K2/3 K9/3", "filled again from empty, the default image given"

Set node = svc.AddRootNode(tvw, "50", "Cincuenta", , , "t")
CheckEqual node.Key & " " & node.Tag, "K50 t", "AddRootNode answers the node, keyed and tagged"
svc.AddNode tvw, "50", "x", "Equis"
Check InStr(raw.Nodes.Shown, " x<K50") > 0, "AddNode under its parent: " & raw.Nodes.Shown
On Error Resume Next
svc.AddRootNode tvw, "50", "Otra vez"
CheckError 35602, "", "", "AddRootNode passes on the tree's refusal"
On Error GoTo 0

raw.Nodes.Item(2).Checked = True
raw.Nodes.Item(5).Checked = True
keys = svc.GetNodes(tvw)
CheckEqual Joined(keys), "2,50", "GetNodes: the checked nodes' keys as the host gave them"
keys = svc.GetNodes(tvw, False)
CheckEqual UBound(keys), raw.Nodes.Count - 1, "and every node's without obolChecked"

Set da = New DataAccessDouble
da.HayConexion = True
Set answer = CreateObject("Celdo.clsCeldos")
Set da.Answer = answer
Set svc.Ex = probe.Disguise(da, "DataAccess")
Set params = CreateObject("Celdo.clsCeldos")
svc.ExecFillTreeView tvw, "Select", exOpenKeyset, , , params
CheckEqual da.Received, "Select," & exOpenKeyset & ",True,True", "the short form: the header as Nothing, the fifth omitted"
Check params Is answer, "the parameters the host wrote come back to the caller"
CheckEqual raw.Nodes.Shown, "K1", "and the tree is filled from the answer"

' The outline: "b" under "a", the caller's Null shown empty in place.
ReDim rows(3, 1)
rows(0, 0) = 2
rows(1, 0) = 1
rows(2, 0) = "b"
rows(3, 0) = Null
rows(0, 1) = 1
rows(1, 1) = ""
rows(2, 1) = "a"
rows(3, 1) = 10
Set gridRaw = New FlexGridDouble
svc.FillFlexGridTree probe.Disguise(gridRaw, "MSFlexGrid"), rows
text = ""
For r = 1 To 2
    text = text & "[" & gridRaw.TextMatrix(r, 1) & "|" & gridRaw.TextMatrix(r, 2) & "|" & gridRaw.RowData(r) & "|" & _
        gridRaw.RowHeight(r) & "]"
Next
CheckEqual text, "[+ a|10|0|][      b||1|0]", "FillFlexGridTree: indented, levels in RowData, deeper rows hidden"
CheckEqual VarType(rows(3, 0)), vbString, "the Null replaced in the caller's array"

Set svc = Nothing
Set probe = Nothing
Finish
