' ISService driven from VBScript against real COM: the helpers, list views, data grid columns
' and flex grids, filled through script doubles of the controls. The doubles are disguised by
' the test probe so that they have a type name, take short calls and chain default members as
' the controls do. What is checked is what crosses the boundary: arguments written back by
' reference, omitted optional arguments, which errors reach the caller and which are swallowed,
' and object identity.
Dim terminated
terminated = 0

' ---- Doubles ----------------------------------------------------------------------------------

' The host's date evaluator: only ReplaceString is asked for.
Class EvaluatorDouble
    Public Function ReplaceString(text, find, replacement)
        ReplaceString = Replace(text, find, replacement)
    End Function
End Class

' The host's data-access object. ExecFillArray takes every argument by reference, records what
' it was given and writes back the Give* values (Empty: left as it came).
Class DataAccessDouble
    Public HayConexion
    Public FormatShowDate
    Public Evaluador
    Public Calls
    Public Received
    Public GiveStatus
    Public GiveHeader
    Public GiveParameters
    Public GiveRows
    Public GiveData
    Private Sub Class_Initialize()
        HayConexion = True
        FormatShowDate = "dd/mm/yyyy"
        Set Evaluador = New EvaluatorDouble
        Calls = 0
        Set GiveHeader = Nothing
        Set GiveParameters = Nothing
    End Sub
    Private Sub Class_Terminate()
        terminated = terminated + 1
    End Sub
    Public Function ExecFillArray(ByRef query, ByRef mode, ByRef status, ByRef header, ByRef options, ByRef params, ByRef maxRows)
        Calls = Calls + 1
        Received = query & "," & mode & "," & status & "," & Shown(header) & "," & options & "," & Shown(params) & "," & maxRows & _
            " as " & VarType(query) & "," & VarType(mode) & "," & VarType(status) & "," & VarType(header) & "," & _
            VarType(options) & "," & VarType(params) & "," & VarType(maxRows)
        If Not IsEmpty(GiveStatus) Then status = GiveStatus
        If Not GiveHeader Is Nothing Then Set header = GiveHeader
        If Not GiveParameters Is Nothing Then Set params = GiveParameters
        If Not IsEmpty(GiveRows) Then maxRows = GiveRows
        ExecFillArray = GiveData
    End Function
    Private Function Shown(value)
        If Not IsObject(value) Then
            Shown = "[" & value & "]"
        ElseIf value Is Nothing Then
            Shown = "Nothing"
        Else
            Shown = TypeName(value)
        End If
    End Function
End Class

' A combo box: ListIndex moves over items with data; its default member is Text.
Class ComboDouble
    Public ListIndex
    Public Selected
    Private texts_
    Private data_
    Private Sub Class_Initialize()
        texts_ = Array("Uno", "Dos", "dos")
        data_ = Array(10, 20, 20)
        ListIndex = -1
    End Sub
    Public Property Get ListCount()
        ListCount = UBound(texts_) + 1
    End Property
    Public Property Get ItemData(i)
        ItemData = data_(i)
    End Property
    Public Default Property Get Text()
        Selected = Selected & ListIndex & ","
        Text = texts_(ListIndex)
    End Property
End Class

' Form controls: a text box placed on a form has Name and Parent; a lookalike without Parent.
Class TextBoxDouble
    Public Name
    Public Parent
End Class

Class LooseTextBoxDouble
    Public Name
End Class

' A list item; SubItems refuses one index when told to, as a control refuses a bad value.
Class ListItemDouble
    Public Key
    Public Text
    Public Tag
    Public Icon
    Public SmallIcon
    Public RefuseAt
    Private subs_
    Private Sub Class_Initialize()
        Set subs_ = CreateObject("Scripting.Dictionary")
        RefuseAt = -1
    End Sub
    Public Property Get SubItems(i)
        If subs_.Exists(CStr(i)) Then SubItems = subs_(CStr(i))
    End Property
    Public Property Let SubItems(i, v)
        If i = RefuseAt Then Err.Raise 380, "ListItem", "Invalid property value"
        subs_(CStr(i)) = v
    End Property
    ' The text and the sub-items set, joined by "|".
    Public Function Shown()
        Dim i
        Shown = Text
        For i = 1 To 9
            If subs_.Exists(CStr(i)) Then Shown = Shown & "|" & subs_(CStr(i))
        Next
    End Function
End Class

Class ListItemsDouble
    Public RefuseAt
    Private items_
    Private Sub Class_Initialize()
        Set items_ = CreateObject("Scripting.Dictionary")
        RefuseAt = -1
    End Sub
    Public Function Add(Index, Key, Text)
        Dim item
        Set item = New ListItemDouble
        item.Key = Key
        item.Text = Text
        item.RefuseAt = RefuseAt
        items_.Add CStr(items_.Count + 1), item
        Set Add = item
    End Function
    Public Sub Clear()
        items_.RemoveAll
    End Sub
    Public Property Get Count()
        Count = items_.Count
    End Property
    Public Property Get Item(i)
        Set Item = items_(CStr(i))
    End Property
    ' Every item as ListItemDouble.Shown, joined by " / ".
    Public Function Shown()
        Dim i
        Shown = ""
        For i = 1 To items_.Count
            If i > 1 Then Shown = Shown & " / "
            Shown = Shown & items_(CStr(i)).Shown()
        Next
    End Function
End Class

Class ColumnDouble
    Public Index
    Public Key
    Public Caption
    Public Width
    Public Alignment
End Class

Class ColumnHeadersDouble
    Private columns_
    Private Sub Class_Initialize()
        Set columns_ = CreateObject("Scripting.Dictionary")
    End Sub
    Public Property Get Count()
        Count = columns_.Count
    End Property
    Public Function Add(Index, Key, Text, Width, Alignment)
        Dim column
        Set column = New ColumnDouble
        column.Index = columns_.Count + 1
        column.Key = Key
        column.Caption = Text
        column.Width = Width
        column.Alignment = Alignment
        columns_.Add CStr(column.Index), column
        Set Add = column
    End Function
    Public Sub Remove(i)
        Dim kept, n, k
        Set kept = columns_
        Set columns_ = CreateObject("Scripting.Dictionary")
        n = 0
        For Each k In kept.Keys
            If CLng(k) <> CLng(i) Then
                n = n + 1
                kept(k).Index = n
                columns_.Add CStr(n), kept(k)
            End If
        Next
    End Sub
    Public Sub Clear()
        columns_.RemoveAll
    End Sub
    Public Property Get Item(i)
        Set Item = columns_(CStr(i))
    End Property
    ' "caption/width/alignment" of each column, joined by ";".
    Public Function Layout()
        Dim k
        Layout = ""
        For Each k In columns_.Keys
            If Layout <> "" Then Layout = Layout & ";"
            Layout = Layout & columns_(k).Caption & "/" & columns_(k).Width & "/" & columns_(k).Alignment
        Next
    End Function
End Class

' A list view in report view. Touched counts the reads of its items and column headers.
Class ListViewDouble
    Public Width
    Public SortOrder
    Public SortKey
    Public Sorted
    Public Touched
    Private items_
    Private headers_
    Private Sub Class_Initialize()
        Width = 6330
        SortOrder = 0
        Touched = 0
        Set items_ = New ListItemsDouble
        Set headers_ = New ColumnHeadersDouble
    End Sub
    Public Property Get ListItems()
        Touched = Touched + 1
        Set ListItems = items_
    End Property
    Public Property Get ColumnHeaders()
        Touched = Touched + 1
        Set ColumnHeaders = headers_
    End Property
    Public Sub AddColumns(n)
        Dim i
        For i = 1 To n
            headers_.Add Empty, Empty, "C" & i, 1000, 0
        Next
    End Sub
End Class

' A data grid's columns, logging what is done to them.
Class DataGridColumnsDouble
    Public Log
    Private Sub Class_Initialize()
        Log = ""
    End Sub
    Public Sub RemoveAll()
        Log = Log & "RemoveAll;"
    End Sub
    Public Function Add(i)
        Log = Log & "Add " & i & ";"
    End Function
    Public Property Get Item(i)
        Log = Log & "Item " & i & ";"
        Set Item = New ColumnDouble
    End Property
End Class

Class DataGridDouble
    Public Width
    Public Columns
    Private Sub Class_Initialize()
        Width = 1000
        Set Columns = New DataGridColumnsDouble
    End Sub
End Class

' A collection of captions counted from 1, as the language's Collection: error 9 outside.
Class CaptionsDouble
    Private captions_
    Private Sub Class_Initialize()
        captions_ = Array("A", "B", "C")
    End Sub
    Public Property Get Count()
        Count = UBound(captions_) + 1
    End Property
    Public Property Get Item(i)
        If i < 1 Or i > Count Then Err.Raise 9, "Collection", "Subscript out of range"
        Item = captions_(i - 1)
    End Property
End Class

' A flex grid with one fixed row and column, 6200 twips wide with a 500-twip fixed column. Cells
' are kept by "row,col"; TextMatrix refuses after RefuseAfter writes when that is not -1.
Class FlexGridDouble
    Public Redraw
    Public BackColorBkg
    Public GridColorFixed
    Public GridColor
    Public ForeColor
    Public ForeColorFixed
    Public BackColorFixed
    Public FixedRows
    Public FixedCols
    Public Rows
    Public Cols
    Public Row
    Public Col
    Public RowSel
    Public ColSel
    Public FillStyle
    Public CellForeColor
    Public RowHeightMin
    Public FormatString
    Public Width
    Public WordWrap
    Public Writes
    Public RefuseAfter
    Public Bands
    Public Added
    Public Removed
    Public ClipText
    Public ClipReads
    Private cells_
    Private widths_
    Private Sub Class_Initialize()
        Set cells_ = CreateObject("Scripting.Dictionary")
        Set widths_ = CreateObject("Scripting.Dictionary")
        FixedRows = CLng(1)
        FixedCols = CLng(1)
        Rows = CLng(1)
        Cols = CLng(2)
        Width = 6200
        widths_("0") = 500
        Writes = 0
        RefuseAfter = -1
        Bands = ""
        Added = ""
        Removed = ""
        ClipReads = 0
    End Sub
    Public Property Let TextMatrix(r, c, v)
        If Writes = RefuseAfter Then Err.Raise 380, "MSFlexGrid", "Invalid property value"
        Writes = Writes + 1
        cells_(r & "," & c) = v
    End Property
    Public Property Get TextMatrix(r, c)
        If cells_.Exists(r & "," & c) Then TextMatrix = cells_(r & "," & c)
    End Property
    Public Property Let ColWidth(i, v)
        widths_(CStr(i)) = v
    End Property
    Public Property Get ColWidth(i)
        If widths_.Exists(CStr(i)) Then ColWidth = widths_(CStr(i))
    End Property
    Public Property Let ColAlignment(i, v)
    End Property
    ' Banding: the colour of each selection painted while FillStyle is 1 (repeat).
    Public Property Let CellBackColor(v)
        If FillStyle = 1 Then Bands = Bands & Row & ":" & v & ";"
    End Property
    Public Sub AddItem(Item, Index)
        If VarType(Index) = vbError Then
            Added = Added & "[" & Replace(Item, vbTab, "~") & "]"
        Else
            Added = Added & "[" & Replace(Item, vbTab, "~") & "@" & Index & "]"
        End If
        Rows = CLng(Rows + 1)
    End Sub
    Public Sub RemoveItem(i)
        Removed = Removed & i & ";"
        Rows = CLng(Rows - 1)
    End Sub
    Public Sub Clear()
        cells_.RemoveAll
    End Sub
    Public Property Get Clip()
        ClipReads = ClipReads + 1
        Clip = ClipText
    End Property
End Class

' Wine's VBScript reads garbage from an array indexed where a function returns it (Split(s, d)(0)):
' the array goes through a variable.
Function Piece(text, separator, n)
    Dim parts
    parts = Split(text, separator)
    Piece = parts(n)
End Function

Dim svc, probe, x, d, da, tag, i, text, rows, params, outParams, header, data, captions

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")

' ---- Helpers ----------------------------------------------------------------------------------

CheckEqual svc.CellBackColor, CLng(&HFFDACC), "banded rows start light blue"
CheckEqual svc.ForeColor, CLng(&H854B00), "text starts dark blue"
CheckEqual svc.BackColor, CLng(&HFFFFFF), "background starts white"
svc.CellBackColor = 123
svc.ForeColor = 5
CheckEqual svc.CellBackColor & "," & svc.ForeColor & "," & svc.BackColor, "123,5,16777215", "colours are kept as let"

CheckEqual svc.nvl(Null, 5), 5, "nvl: Null gives the default"
CheckEqual svc.nvl("", 5), "", "nvl: an empty text is a value"
CheckEqual svc.BuildFormat(3.5, "0.00") & "[" & svc.BuildFormat(Null, "") & "]", "3.50[]", _
    "BuildFormat with a format, and Null without one as the empty text"
CheckEqual svc.MoveSpin(9, 10, 1, 2) & "," & svc.MoveSpin(2, 10, 1, -2), "10,1", _
    "MoveSpin stops at the ceiling a positive step reaches and the floor of a negative one"

' Wine's VBScript has no ChrW: the separator is Chr(187) in the ANSI code page.
tag = "A" & Chr(187) & "B" & Chr(187) & "C"
CheckEqual svc.GetTag(tag, 2) & "," & svc.GetTag(tag, 3) & "," & svc.GetTag(tag & Chr(187), 3), "B,,C", _
    "GetTag reads pieces ended by the character 187"
CheckEqual svc.LetTag(tag, 1, "X"), tag, "LetTag does not see the character 187"
CheckEqual svc.LetTag("A187B187", 1, "X") & "," & svc.LetTag("A187B187", 2, "X"), "X187B187,A1X187", _
    "LetTag looks for the digits 187 instead"

Set x = New ComboDouble
Set d = probe.Disguise(x, "ComboBox")
svc.FindItemData 20, d
CheckEqual x.ListIndex, 1, "FindItemData selects the first item with that data"
svc.FindItemData 99, d
CheckEqual x.ListIndex, -1, "and nothing when no item has it"
svc.FindListIndex "DOS", d
CheckEqual x.ListIndex & " after reading " & x.Selected, "1 after reading 0,1,", _
    "FindListIndex selects each item and reads its default member, comparing without case"

Set d = probe.Disguise(New TextBoxDouble, "TextBox")
CheckEqual svc.IsControl(d), True, "a text box on a form is a control"
Set d = probe.Disguise(New LooseTextBoxDouble, "TextBox")
CheckEqual svc.IsControl(d), False, "one without Parent is not"
Set x = CreateObject("Celdo.clsCeldo")
CheckEqual svc.IsControl(5) Or svc.IsControl(Nothing) Or svc.IsControl(x), False, "a number, Nothing, a field are not"

Set da = New DataAccessDouble
On Error Resume Next
text = svc.CustomFormat
CheckError 91, "", "", "CustomFormat without a data-access object"
On Error GoTo 0
Set svc.Ex = da
CheckEqual svc.CustomFormat, "dd/MM/yyyy", "CustomFormat has the host's evaluator upper-case the months"

' ---- List views -------------------------------------------------------------------------------

Dim lvRaw, lv
Set lvRaw = New ListViewDouble
Set lv = probe.Disguise(lvRaw, "_ListView")

Set header = CreateObject("Celdo.clsCeldos")
header.Add "Id", "", exLong
header.Add "Name", "", exText
Set outParams = CreateObject("Celdo.clsCeldos")
outParams.AddParameter "Out", exLong, 1
ReDim data(1, 1)
data(0, 0) = 1
data(1, 0) = "Ana"
data(0, 1) = 2
data(1, 1) = "Eva"
Set da.GiveHeader = header
Set da.GiveParameters = outParams
da.GiveStatus = -5
da.GiveRows = 25
da.GiveData = data

Set params = Nothing
rows = 0
svc.ExecFillListView lv, 0, "Select", exOpenStatic, 2, "!", params, rows, False, False
CheckEqual da.Received, "Select,5273,0,Nothing,2,Nothing,0 as 8,3,3,9,2,9,3", _
    "ExecFillArray gets every argument, typed as the service declares them"
Check params Is outParams, "the parameters the host wrote come back to the caller"
CheckEqual rows, CLng(25), "and so does the row count"
CheckEqual lvRaw.ListItems.Shown(), "1|Ana / 2|Eva", "the rows are filled in spite of the status"
CheckEqual lvRaw.ColumnHeaders.Layout(), "Id/1680/0;Name/4320/0", "columns from the header the host wrote, the last one filling the width"

Set lvRaw = New ListViewDouble
Set lv = probe.Disguise(lvRaw, "_ListView")
da.GiveRows = Empty
svc.ExecFillListView lv, 0, "Select", exOpenStatic
CheckEqual Piece(da.Received, " as ", 0), "Select,5273,0,Nothing,0,Nothing,0", "omitted arguments go as their defaults"
CheckEqual lvRaw.ListItems.Shown(), "1|Ana / 2|Eva", "with the separator ""!"" and no key column"

' -1 rows: the columns are laid out without the key and the list left empty.
Set lvRaw = New ListViewDouble
Set lv = probe.Disguise(lvRaw, "_ListView")
da.GiveRows = -1
rows = 0
svc.ExecFillListView lv, 0, "Select", exOpenStatic, , , , rows, True
CheckEqual rows, CLng(-1), "-1 rows comes back"
CheckEqual lvRaw.ListItems.Count & "," & lvRaw.ColumnHeaders.Count & "," & lvRaw.ColumnHeaders.Item(1).Caption, "0,1,Name", _
    "only the columns, the key left out"

Set lvRaw = New ListViewDouble
Set lv = probe.Disguise(lvRaw, "_ListView")
da.HayConexion = False
i = da.Calls
svc.ExecFillListView lv, 0, "Select", exOpenStatic
CheckEqual lvRaw.Touched & "," & (da.Calls - i), "0,0", "without a connection nothing is fetched or touched"
da.HayConexion = True
da.GiveRows = Empty

' AddListItem: numeric keys get a "K", icons below 0 are not set, pieces past the columns go to
' the tag, the last one winning.
Set lvRaw = New ListViewDouble
Set lv = probe.Disguise(lvRaw, "_ListView")
lvRaw.AddColumns 1
svc.AddListItem lv, "12", -1, -1, "a!b", "!", "t"
svc.AddListItem lv, "A12", 0, 0, "c", "!"
svc.AddListItem lv, "", -1, -1, "d!e!f!g", "!", "t"
Set x = lvRaw.ListItems
CheckEqual x.Item(1).Key & "," & x.Item(2).Key & "," & VarType(x.Item(3).Key), "K12,A12,10", _
    "numeric keys get a K, an empty key is omitted"
CheckEqual x.Item(1).Tag & "," & VarType(x.Item(1).Icon) & "," & VarType(x.Item(1).SmallIcon), "t,0,0", "icons -1 are not set"
CheckEqual "[" & x.Item(2).Tag & "]," & x.Item(2).Icon & "," & x.Item(2).SmallIcon, "[],0,0", "icons 0 are; an omitted tag is empty"
CheckEqual x.Shown() & " tag " & x.Item(3).Tag, "a|b / c / d|e tag g", "pieces past the columns overwrite the tag"

' An error the control raises ends the item quietly, keeping what was set.
Set lvRaw = New ListViewDouble
Set lv = probe.Disguise(lvRaw, "_ListView")
lvRaw.AddColumns 3
lvRaw.ListItems.RefuseAt = 2
On Error Resume Next
svc.AddListItem lv, "", -1, -1, "a!b!c!d", "!", "t"
svc.AddListItem lv, "", -1, -1, "e!f", "!", "t"
CheckError 0, "", "", "an error from SubItems does not reach the caller"
On Error GoTo 0
CheckEqual lvRaw.ListItems.Shown(), "a|b / e|f", "the items and sub-items set before the error stay"

Set x = New ColumnDouble
x.Index = 3
svc.ListViewColumnClick lv, x
CheckEqual lvRaw.SortOrder & "," & lvRaw.SortKey & "," & lvRaw.Sorted, "1,2,True", "a click sorts descending by that column"
CheckEqual VarType(lvRaw.SortOrder) & "," & VarType(lvRaw.SortKey), "3,2", "SortOrder as a Long, SortKey as an Integer"
svc.ListViewColumnClick lv, x
CheckEqual lvRaw.SortOrder, CLng(0), "a second click sorts ascending"

' Data grids count columns from 0 against a collection counted from 1: item 0 is refused.
Set x = New DataGridDouble
Set d = probe.Disguise(x, "DataGrid")
Set captions = New CaptionsDouble
On Error Resume Next
svc.DBGridColumnHeaders d, captions
CheckError 9, "", "", "the collection's error 9 reaches the caller"
On Error GoTo 0
CheckEqual x.Columns.Log, "RemoveAll;Add 0;Item 0;", "after the grid was cleared and one column added"
Set captions = Nothing

' ---- Flex grids -------------------------------------------------------------------------------

Dim gRaw, g, kept
Set gRaw = New FlexGridDouble
Set g = probe.Disguise(gRaw, "MSFlexGrid")
Set kept = g
svc.FlexGridHeader g, "Code;Name"
CheckEqual gRaw.FormatString, "|Code|Name", "a text header"
CheckEqual gRaw.Cols & "," & gRaw.Redraw & "," & gRaw.WordWrap, "3,True,True", "three columns, wrapped, redrawn"
Check g Is kept, "the grid passed by reference comes back as the same object"

Set header = CreateObject("Celdo.clsCeldos")
header.Add "Price", "", exDouble
header.Add "Name", "", exText
header.Item(1).Format = "0.00"
ReDim data(1, 2)
data(0, 0) = 2.5
data(1, 0) = "x"
data(0, 1) = 1
data(1, 1) = Null
data(0, 2) = 3
data(1, 2) = "z"
Set gRaw = New FlexGridDouble
Set g = probe.Disguise(gRaw, "MSFlexGrid")
svc.FillFlexGrid g, data, header
text = ""
For i = 1 To 3
    text = text & gRaw.TextMatrix(i, 1) & ":" & gRaw.TextMatrix(i, 2) & ";"
Next
CheckEqual text & " in " & gRaw.Writes, "2.50:x;1.00:;3.00:z; in 6", "one TextMatrix per cell, formatted by the header"
CheckEqual VarType(data(1, 1)) & "[" & data(1, 1) & "]", "8[]", "the Null is replaced in the caller's own array"
CheckEqual gRaw.Bands, "1:123;2:-2147483643;3:123;", "rows banded with CellBackColor and the window colour"
CheckEqual gRaw.Rows & "," & gRaw.Cols & "," & gRaw.Redraw & "," & gRaw.ColWidth(0), "4,3,True,285", "rows and columns sized"

ReDim data(2, 0)
data(0, 0) = 1
data(1, 0) = "a"
data(2, 0) = Null
Set gRaw = New FlexGridDouble
Set g = probe.Disguise(gRaw, "MSFlexGrid")
svc.FillFlexGrid g, data, header
CheckEqual "[" & gRaw.TextMatrix(1, 3) & "]," & VarType(data(2, 0)) & "," & gRaw.Writes, "[],1,3", _
    "a Null in a column past the header's fields is shown empty and left Null"

Set gRaw = New FlexGridDouble
Set g = probe.Disguise(gRaw, "MSFlexGrid")
gRaw.RefuseAfter = 1
On Error Resume Next
svc.FillFlexGrid g, data, header
CheckError 0, "", "", "an error from the grid does not reach the caller"
On Error GoTo 0
CheckEqual gRaw.Writes & "," & gRaw.Redraw, "1,False", "the fill stops there, Redraw still off"

ReDim data(1, 0)
data(0, 0) = 7
data(1, 0) = "Ana"
da.GiveData = data
Set da.GiveHeader = header
da.GiveStatus = 0
Set gRaw = New FlexGridDouble
Set g = probe.Disguise(gRaw, "MSFlexGrid")
svc.ExecFillFlexGrid g, "Select", exOpenStatic
CheckEqual Piece(da.Received, " as ", 0), "Select,5273,0,Nothing,0,Nothing,0", "ExecFillFlexGrid's omitted arguments"
CheckEqual gRaw.TextMatrix(1, 1) & ":" & gRaw.TextMatrix(1, 2), "7.00:Ana", "cells formatted by the header the host wrote"
da.GiveStatus = -1
Set gRaw = New FlexGridDouble
Set g = probe.Disguise(gRaw, "MSFlexGrid")
Set params = Nothing
svc.ExecFillFlexGrid g, "Select", exOpenStatic, 3, params, 50
CheckEqual Piece(da.Received, " as ", 0), "Select,5273,0,Nothing,3,Nothing,50", "ExecFillFlexGrid's arguments given"
CheckEqual gRaw.Writes & "," & IsEmpty(gRaw.Redraw), "0,True", "a failed query leaves the grid alone"
Check params Is outParams, "but the parameters the host wrote still come back"

Dim fmt, idx
Set fmt = CreateObject("Celdo.clsCeldos")
fmt.Add "A", "", exDouble
fmt.Item(1).Format = "0.00"
Set gRaw = New FlexGridDouble
Set g = probe.Disguise(gRaw, "MSFlexGrid")
gRaw.Rows = CLng(3)
idx = -1
CheckEqual svc.AddFlexItem(g, "1" & vbTab & "dos", fmt, idx), CLng(3), "AddFlexItem answers the new row"
CheckEqual idx, CLng(3), "and writes it back into Index"
CheckEqual svc.AddFlexItem(g, "x"), CLng(4), "without a format or an index: at the end"
idx = 1
svc.AddFlexItem g, "y", fmt, idx
CheckEqual gRaw.Added, "[~1.00~dos][~x][~y@1]", "AddItem gets the fixed column's tab, formatted cells and the index if given"
CheckEqual svc.RemoveFlexItem(g, 1), CLng(5), "RemoveFlexItem answers the rows left"
gRaw.Rows = CLng(2)
CheckEqual svc.RemoveFlexItem(g, 1) & "," & gRaw.Removed, "1,1;", "the last scrollable row is cut by Rows, not removed"
CheckEqual svc.FlexItemUpdateRow(g, 4, "3;y", fmt), CLng(4), "FlexItemUpdateRow answers the row"
CheckEqual gRaw.TextMatrix(4, 1) & ":" & gRaw.TextMatrix(4, 2), "3.00:y", "its cells rewritten and formatted"

gRaw.Rows = CLng(3)
gRaw.Cols = CLng(3)
gRaw.ClipText = "A" & vbTab & "B"
On Error Resume Next
svc.FlexGridClipBoard g
If Err.Number <> 0 Then WScript.Echo "note: FlexGridClipBoard under Wine: error " & Err.Number & " (" & Err.Description & ")"
Err.Clear
On Error GoTo 0
CheckEqual gRaw.ClipReads & "," & gRaw.Row & "," & gRaw.Col & "," & gRaw.RowSel & "," & gRaw.ColSel, "1,0,1,2,2", _
    "FlexGridClipBoard selects all but the fixed column and reads Clip"

' ---- Members not built yet, identity, release -------------------------------------------------

On Error Resume Next
svc.FillForm Nothing, Nothing, "Cliente"
text = Err.Description
CheckError 445, "", "", "FillForm is refused"
Check InStr(text, "ISService.FillForm is not available yet") > 0, "saying so"
svc.FillToolBar lv, Empty
CheckError 445, "", "", "and so is FillToolBar"
On Error GoTo 0

Set x = svc
Check x Is svc, "a second reference is the same object"
Set x = Nothing
Set d = Nothing
Set g = Nothing
Set kept = Nothing
Set gRaw = Nothing
Set lv = Nothing
Set lvRaw = Nothing
Set header = Nothing
Set outParams = Nothing
Set params = Nothing
Set fmt = Nothing
data = Empty
Set da = Nothing
CheckEqual terminated, 0, "the service holds its data-access object"
Set svc = Nothing
CheckEqual terminated, 1, "and lets it go with itself"
Set probe = Nothing
Finish
