' Script doubles of a host form and its controls, as Celdo's service reaches them by member
' name: shared by the demonstration and the tests. Wine's script engine wants one name per
' Public line, hence the long lists.
'
' On Windows a host passes its real form. Under Wine a script class reports its type as
' "Object", and the service tells controls by their type name, so each double is placed on the
' form wrapped by the test probe (CeldoProbe.Probe.Disguise), which gives it a control's type
' name and passes every call on, filling in the arguments a call leaves out.

' Text boxes, masked edit boxes, labels, check boxes, date pickers, pictures and any other
' control. The mask has no literals, so a masked box's ClipText is its text as typed.
Class ControlDouble
    Public Name
    Public Parent
    Public DataField
    Public DataMember
    Public MaxLength
    Public ForeColor
    Public BackColor
    Public BackStyle
    Public Appearance
    Public Caption
    Public Value
    Public CalendarForeColor
    Public TextRTF
    Public Title
    Public MaskColor
    Public BackColorBkg
    Public Picture
    Private text_
    Public Property Get Text()
        Text = text_
    End Property
    Public Property Let Text(v)
        text_ = v
    End Property
    Public Property Get ClipText()
        ClipText = text_
    End Property
End Class

' A list or combo box that keeps its items and their ItemData (a Long, as a list keeps it).
Class ListDouble
    Public Name
    Public Parent
    Public DataField
    Public DataMember
    Public ForeColor
    Public ListIndex
    Public NewIndex
    Private texts_
    Private data_
    Private Sub Class_Initialize()
        Set texts_ = CreateObject("Scripting.Dictionary")
        Set data_ = CreateObject("Scripting.Dictionary")
        ListIndex = -1
    End Sub
    Public Sub Clear()
        texts_.RemoveAll
        data_.RemoveAll
        ListIndex = -1
    End Sub
    Public Sub AddItem(item)
        NewIndex = texts_.Count
        texts_(NewIndex) = item
        data_(NewIndex) = 0
    End Sub
    Public Property Get ListCount()
        ListCount = texts_.Count
    End Property
    Public Property Get ItemData(i)
        ItemData = data_(i)
    End Property
    Public Property Let ItemData(i, v)
        data_(i) = CLng(v)
    End Property
    Public Default Property Get Text()
        Text = ""
        If ListIndex >= 0 Then Text = texts_(ListIndex)
    End Property
    ' "text/ItemData" of each item, tabs shown as "~".
    Public Function Listing()
        Dim i
        Listing = ""
        For i = 0 To texts_.Count - 1
            If i > 0 Then Listing = Listing & "; "
            Listing = Listing & Replace(texts_(i), vbTab, "~") & "/" & data_(i)
        Next
    End Function
End Class

' An image combo's item, a toolbar button, a list view's item or column header. Selecting an
' image combo's item makes it the combo's SelectedItem, as the control does.
Class ElementDouble
    Public Owner
    Public Key
    Public Text
    Public Tag
    Public Icon
    Public SmallIcon
    Public Width
    Public Alignment
    Public Image
    Public SelImage
    Public ToolTipText
    Public ButtonMenus
    Public Index
    Private selected_
    Private subs_
    Private Sub Class_Initialize()
        Set subs_ = CreateObject("Scripting.Dictionary")
        selected_ = False
    End Sub
    Public Property Get Selected()
        Selected = selected_
    End Property
    Public Property Let Selected(v)
        If CBool(v) Then Owner.Choose Me Else selected_ = False
    End Property
    Public Sub Mark(v)
        selected_ = v
    End Sub
    Public Property Get SubItems(i)
        SubItems = subs_(CStr(i))
    End Property
    Public Property Let SubItems(i, v)
        subs_(CStr(i)) = v
    End Property
End Class

' Image-combo items, toolbar buttons, list items or column headers. Added with (Index, Key,
' Text, Width, Alignment), at Index when it is given; found by position from 1, or by key
' (error 35601 when absent).
Class ElementsDouble
    Public Combo
    Private items_
    Private Sub Class_Initialize()
        Set items_ = CreateObject("Scripting.Dictionary")
    End Sub
    Public Property Get Count()
        Count = items_.Count
    End Property
    Public Sub Clear()
        items_.RemoveAll
    End Sub
    Public Function Add(Index, Key, Text, Width, Alignment)
        Dim e, k, at, placed
        Set e = New ElementDouble
        Set e.Owner = Me
        If VarType(Key) <> vbError Then e.Key = Key
        e.Text = Text
        e.Width = Width
        e.Alignment = Alignment
        Set e.ButtonMenus = New MenusDouble
        at = items_.Count
        If VarType(Index) <> vbError Then at = Index - 1
        Set placed = CreateObject("Scripting.Dictionary")
        For k = 0 To items_.Count - 1
            If k = at Then placed.Add placed.Count, e
            placed.Add placed.Count, items_.Item(k)
        Next
        If at >= items_.Count Then placed.Add placed.Count, e
        Set items_ = placed
        Renumber
        Set Add = e
    End Function
    Public Property Get Item(i)
        Dim k
        If VarType(i) = vbString Then
            For k = 0 To items_.Count - 1
                If items_.Item(k).Key = i Then Set Item = items_.Item(k)
            Next
            If IsEmpty(Item) Then Err.Raise 35601, "Elements", "Element not found"
        Else
            Set Item = items_.Item(i - 1)
        End If
    End Property
    Public Sub Remove(i)
        Dim placed, k
        Set placed = CreateObject("Scripting.Dictionary")
        For k = 0 To items_.Count - 1
            If k <> i - 1 Then placed.Add placed.Count, items_.Item(k)
        Next
        Set items_ = placed
        Renumber
    End Sub
    Private Sub Renumber()
        Dim k
        For k = 0 To items_.Count - 1
            items_.Item(k).Index = k + 1
        Next
    End Sub
    Public Sub Choose(chosen)
        If IsObject(Combo) Then Set Combo.SelectedItem = chosen Else chosen.Mark True
    End Sub
    Public Sub MarkOnly(chosen)
        Dim k
        For k = 0 To items_.Count - 1
            items_.Item(k).Mark (items_.Item(k) Is chosen)
        Next
    End Sub
    ' "Key:Text" of each element, starred when selected, with its image, tooltip and first two
    ' sub-items when set.
    Public Function Listing()
        Dim k, e
        Listing = ""
        For k = 0 To items_.Count - 1
            Set e = items_.Item(k)
            If k > 0 Then Listing = Listing & "; "
            Listing = Listing & e.Key & ":" & e.Text
            If e.Selected Then Listing = Listing & "*"
            If Not IsEmpty(e.Image) Then Listing = Listing & " img" & e.Image
            If e.ToolTipText <> "" Then Listing = Listing & " tip " & e.ToolTipText
            If e.SubItems(1) <> "" Then Listing = Listing & "|" & e.SubItems(1) & "|" & e.SubItems(2)
        Next
    End Function
End Class

' A toolbar button's menu: its entries listed as they are added.
Class MenusDouble
    Public Shown
    Public Sub Clear()
        Shown = ""
    End Sub
    Public Sub Add(Index, Key, Text)
        If VarType(Key) = vbError Then Key = ""
        Shown = Shown & "[" & Key & ":" & Text & "]"
    End Sub
End Class

Class ImageComboDouble
    Public Name
    Public Parent
    Public DataField
    Public DataMember
    Public ForeColor
    Public Caption
    Public ComboItems
    Private selected_
    Private Sub Class_Initialize()
        Set ComboItems = New ElementsDouble
        Set ComboItems.Combo = Me
        Set selected_ = Nothing
    End Sub
    Public Property Get SelectedItem()
        Set SelectedItem = selected_
    End Property
    Public Property Set SelectedItem(item)
        Set selected_ = item
        ComboItems.MarkOnly item
    End Property
    Public Sub Refresh()
    End Sub
End Class

Class ToolbarDouble
    Public Buttons
    Private Sub Class_Initialize()
        Set Buttons = New ElementsDouble
    End Sub
End Class

Class ListViewDouble
    Public Width
    Public ListItems
    Public ColumnHeaders
    Private Sub Class_Initialize()
        Width = 6330
        Set ListItems = New ElementsDouble
        Set ColumnHeaders = New ElementsDouble
    End Sub
    ' Column headers captioned as given, for a list view whose columns are laid out already.
    Public Sub Columns(captions)
        Dim c
        For Each c In captions
            ColumnHeaders.Add ColumnHeaders.Count + 1, "", c, 1000, 0
        Next
    End Sub
End Class

' A form whose Controls are the keys of a dictionary (the names its items): walked through the
' dictionary's own enumerator, as For Each walks a real form's Controls. Place puts a double on
' the form in the data group `member`, dressed as a control of type `typeName`.
Class FormDouble
    Public BackColor
    Public ForeColor
    Public Controls
    Private Sub Class_Initialize()
        Set Controls = CreateObject("Scripting.Dictionary")
    End Sub
    Public Function Place(raw, typeName, name, member)
        raw.Name = name
        raw.DataMember = member
        raw.DataField = ""
        Set Place = probe.Disguise(raw, typeName)
        Controls.Add Place, name
    End Function
End Class
