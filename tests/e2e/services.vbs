' ISService from VBScript against real COM, through script doubles of the controls disguised by
' the test probe (a type name, short calls padded). The algorithms have native tests; this
' checks what only a script host shows: arguments written back by reference, omitted optional
' arguments, which errors reach the caller and which are swallowed, and object lifetimes.
Dim terminated
terminated = 0

' The host's data-access object. ExecFillArray records what it was given and writes back, by
' reference, a failed status (which only the flex grid heeds), the Give* objects and 25 rows.
Class DataAccessDouble
    Public HayConexion
    Public Received
    Public Types
    Public GiveHeader
    Public GiveParameters
    Public GiveData
    Private Sub Class_Terminate()
        terminated = terminated + 1
    End Sub
    Public Function ExecFillArray(ByRef query, ByRef mode, ByRef status, ByRef header, ByRef options, ByRef params, ByRef maxRows)
        ' Wine's Join fails on an array of by-reference arguments: the texts are concatenated.
        Received = query & "," & mode & "," & status & "," & Named(header) & "," & options & "," & _
            Named(params) & "," & maxRows
        Types = VarType(query) & "," & VarType(mode) & "," & VarType(status) & "," & VarType(header) & "," & _
            VarType(options) & "," & VarType(params) & "," & VarType(maxRows)
        status = -1
        Set header = GiveHeader
        Set params = GiveParameters
        maxRows = 25
        ExecFillArray = GiveData
    End Function
    ' Wine's TypeName(Nothing) crashes.
    Private Function Named(value)
        Named = "Nothing"
        If Not value Is Nothing Then Named = TypeName(value)
    End Function
End Class

' A combo box whose items refuse to give their data.
Class ComboDouble
    Public ListCount
    Public Property Get ItemData(i)
        Err.Raise 380, "ComboBox", "Invalid property value"
    End Property
End Class

' A text box on a form has Name and Parent from its container; a lookalike lacks Parent.
Class TextBoxDouble
    Public Name
    Public Parent
End Class

Class LooseTextBoxDouble
    Public Name
End Class

' A list view's items or column headers: each entry added is appended to Shown, an item's
' sub-items after its text. SubItems(RefuseAt) is refused, as a control refuses a bad value.
' All start Empty, which the service reads as 0.
Class EntriesDouble
    Public Shown
    Public Count
    Public RefuseAt
    Public Sub Clear()
        Shown = ""
        Count = 0
    End Sub
    Public Function Add(Index, Key, Text, Width, Alignment)
        Dim entry
        If Count > 0 Then Shown = Shown & " / "
        Shown = Shown & Text
        Count = Count + 1
        Set entry = New EntryDouble
        Set entry.Owner = Me
        Set Add = entry
    End Function
End Class

Class EntryDouble
    Public Owner
    Public Tag
    Public Icon
    Public SmallIcon
    Public Property Let SubItems(i, v)
        If i = Owner.RefuseAt Then Err.Raise 380, "ListItem", "Invalid property value"
        Owner.Shown = Owner.Shown & "|" & v
    End Property
End Class

Class ListViewDouble
    Public Width
    Public ListItems
    Public ColumnHeaders
    Private Sub Class_Initialize()
        Width = 6330
        Set ListItems = New EntriesDouble
        Set ColumnHeaders = New EntriesDouble
    End Sub
End Class

' A data grid that is its own column collection: the captions fail before a column is described.
Class DataGridDouble
    Public Width
    Public Property Get Columns()
        Set Columns = Me
    End Property
    Public Sub RemoveAll()
    End Sub
    Public Function Add(i)
    End Function
    Public Property Get Item(i)
        Set Item = Me
    End Property
End Class

' Captions counted from 1, as the language's Collection: error 9 outside.
Class CaptionsDouble
    Public Property Get Count()
        Count = 3
    End Property
    Public Property Get Item(i)
        If i < 1 Or i > 3 Then Err.Raise 9, "Collection", "Subscript out of range"
        Item = "C" & i
    End Property
End Class

' A flex grid with one fixed row and column. Cells are kept by "row,col"; TextMatrix refuses
' once Writes reaches RefuseAfter; AddItem logs "[item@index]", tabs shown as "~".
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
    Public Writes
    Public RefuseAfter
    Public Added
    Private cells_
    Private Sub Class_Initialize()
        Set cells_ = CreateObject("Scripting.Dictionary")
        FixedRows = CLng(1)
        FixedCols = CLng(1)
        Rows = CLng(1)
        Cols = CLng(2)
        Writes = 0
        RefuseAfter = -1
    End Sub
    Public Property Let TextMatrix(r, c, v)
        If Writes = RefuseAfter Then Err.Raise 380, "MSFlexGrid", "Invalid property value"
        Writes = Writes + 1
        cells_(r & "," & c) = v
    End Property
    Public Property Get TextMatrix(r, c)
        TextMatrix = cells_(r & "," & c)
    End Property
    Public Property Let ColWidth(i, v)
    End Property
    Public Sub AddItem(Item, Index)
        Added = Added & "[" & Replace(Item, vbTab, "~")
        If VarType(Index) <> vbError Then Added = Added & "@" & Index
        Added = Added & "]"
        Rows = CLng(Rows + 1)
    End Sub
End Class

Dim svc, probe, da, x, text, header, outParams, params, rows, data, lvRaw, lv, gRaw, g, idx, i

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")

' ---- Errors that reach the caller, IsControl -------------------------------------------------

On Error Resume Next
text = svc.CustomFormat
CheckError 91, "", "", "CustomFormat without a data-access object"
Set x = New ComboDouble
x.ListCount = 2
svc.FindItemData 20, probe.Disguise(x, "ComboBox")
' Under Wine a script class's error leaves COM without its source and text: the number is compared.
CheckError 380, "", "", "a helper passes on the control's error"
svc.DBGridColumnHeaders probe.Disguise(New DataGridDouble, "DataGrid"), New CaptionsDouble
CheckError 9, "", "", "DBGridColumnHeaders passes on the collection's error 9"
On Error GoTo 0

Set da = New DataAccessDouble
da.HayConexion = True
Set svc.Ex = da

CheckEqual svc.IsControl(probe.Disguise(New TextBoxDouble, "TextBox")), True, "a text box on a form is a control"
CheckEqual svc.IsControl(probe.Disguise(New LooseTextBoxDouble, "TextBox")), False, "one without Parent is not"

' ---- List views -------------------------------------------------------------------------------

Set header = CreateObject("Celdo.clsCeldos")
header.Add "Id", "", exLong
header.Add "Name", "", exText
Set outParams = CreateObject("Celdo.clsCeldos")
outParams.AddParameter "Out", exLong, 1
ReDim data(1, 0)
data(0, 0) = 1
data(1, 0) = "Ana"
Set da.GiveHeader = header
Set da.GiveParameters = outParams
da.GiveData = data

Set lvRaw = New ListViewDouble
Set lv = probe.Disguise(lvRaw, "_ListView")
Set params = Nothing
rows = 0
svc.ExecFillListView lv, 0, "Select", exOpenStatic, 2, "!", params, rows, False, False
CheckEqual da.Received & " as " & da.Types, "Select,5273,0,Nothing,2,Nothing,0 as 8,3,3,9,2,9,3", _
    "the caller's own data-access object gets every argument, typed as the service declares them"
Check params Is outParams, "the parameters the host wrote come back to the caller"
CheckEqual rows, CLng(25), "and so does the row limit"
CheckEqual lvRaw.ListItems.Shown & " under " & lvRaw.ColumnHeaders.Shown, "1|Ana under Id / Name", _
    "the rows filled under the header the host wrote, whatever the status"

svc.ExecFillListView probe.Disguise(New ListViewDouble, "_ListView"), 0, "Select", exOpenStatic
CheckEqual da.Received, "Select,5273,0,Nothing,0,Nothing,0", "omitted arguments go as their defaults"

' An error from the control ends the item quietly, keeping what was set.
Set lvRaw = New ListViewDouble
Set lv = probe.Disguise(lvRaw, "_ListView")
lvRaw.ColumnHeaders.Count = 3
lvRaw.ListItems.RefuseAt = 2
On Error Resume Next
svc.AddListItem lv, "", -1, -1, "a!b!c!d", "!", "t"
svc.AddListItem lv, "", -1, -1, "e!f", "!", "t"
CheckError 0, "", "", "AddListItem does not pass on the control's error"
On Error GoTo 0
CheckEqual lvRaw.ListItems.Shown, "a|b / e|f", "the items and sub-items set before it stay"

' ---- Flex grids -------------------------------------------------------------------------------

Set header = CreateObject("Celdo.clsCeldos")
header.Add "Price", "", exDouble
header.Add "Name", "", exText
header.Item(1).Format = "0.00"
ReDim data(1, 1)
data(0, 0) = 2.5
data(1, 0) = "x"
data(0, 1) = 1
data(1, 1) = Null
Set gRaw = New FlexGridDouble
Set g = probe.Disguise(gRaw, "MSFlexGrid")
svc.FillFlexGrid g, data, header
text = ""
For i = 1 To 2
    text = text & gRaw.TextMatrix(i, 1) & ":" & gRaw.TextMatrix(i, 2) & ";"
Next
CheckEqual text & " redrawn " & gRaw.Redraw, "2.50:x;1.00:; redrawn True", "a flex grid filled to its end"
CheckEqual VarType(data(1, 1)) & "[" & data(1, 1) & "]", "8[]", "the Null is replaced in the caller's own array"

' AddFlexItem on the filled grid (3 rows): Index written back, and left out when omitted.
idx = -1
CheckEqual svc.AddFlexItem(g, "a" & vbTab & "b", , idx), CLng(3), "AddFlexItem answers the new row"
CheckEqual idx, CLng(3), "and writes it back into Index"
CheckEqual svc.AddFlexItem(g, "c"), CLng(4), "without an index: at the end"
CheckEqual gRaw.Added, "[~a~b][~c]", "AddItem is given no index"

Set gRaw = New FlexGridDouble
Set g = probe.Disguise(gRaw, "MSFlexGrid")
gRaw.RefuseAfter = 1
On Error Resume Next
svc.FillFlexGrid g, data, header
CheckError 0, "", "", "FillFlexGrid does not pass on the grid's error"
On Error GoTo 0
CheckEqual gRaw.Writes & "," & gRaw.Redraw, "1,False", "the fill stops there, Redraw still off"

' The status the host writes back is read: a failed query leaves the grid alone.
Set gRaw = New FlexGridDouble
svc.ExecFillFlexGrid probe.Disguise(gRaw, "MSFlexGrid"), "Select", exOpenStatic
CheckEqual gRaw.Writes & "," & IsEmpty(gRaw.Redraw), "0,True", "a failed status leaves the grid untouched"

' ---- Release ----------------------------------------------------------------------------------

Set da = Nothing
CheckEqual terminated, 0, "the service holds its data-access object"
Set svc = Nothing
CheckEqual terminated, 1, "and lets it go with itself"
Set probe = Nothing
Finish
