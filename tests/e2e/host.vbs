' The library calling back into host objects by name, as the control-filling services do: a
' VBScript class instance and a platform object, with by-reference arguments and errors, and the
' probe's disguise that makes a script class look like a control.
Class Counter
    Public Total
    Public Function Twice(ByRef n)
        n = n * 2
        Twice = "doubled"
    End Function
    Public Function Refuse(ByRef n)
        Err.Raise 1234, "HostSource", "the host said no"
    End Function
End Class

' A control's double: the disguise gives it type information, optional parameters, and a
' property given arguments indexing its value, as the control has.
Class FakeListItems
    Public Default Function Item(Index)
        Item = "item " & Index
    End Function
End Class

Class FakeListView
    Public Runs
    Private items_
    Private Sub Class_Initialize()
        Runs = 0
        Set items_ = New FakeListItems
    End Sub
    Public Property Get ListItems()
        Set ListItems = items_
    End Property
    Public Function Add(Key, Text, Icon)
        Runs = Runs + 1
        Add = Key & "," & VarType(Text) & "," & VarType(Icon)
    End Function
    Public Function Refuse(Key, Text)
        Runs = Runs + 1
        Err.Raise 1235, "ListSource", "the list said no"
    End Function
End Class

Dim p, c, n, d, fake, lv
Set p = CreateObject("CeldoProbe.Probe")
Set c = New Counter
c.Total = 5

n = 21
CheckEqual p.Call(c, "Twice", n), "doubled", "a method of a script object"
CheckEqual n, 42, "its by-reference argument comes back through both calls"
CheckEqual p.Read(c, "Total"), 5, "a property read by name"
p.Write c, "Total", 7
CheckEqual c.Total, 7, "a property written by name"

' A parameter its type information declares a by-reference Variant gets a reference to a Variant
' that the library owns and frees: an object passed there must not stay alive after the call.
Set d = CreateObject("Scripting.Dictionary")
Set n = p
CheckEqual p.Call(d, "Exists", n), False, "a platform object's typed by-reference Variant parameter"
Check n Is p, "that argument comes back as it was"
Set n = Nothing

' Wine's VBScript gives callers outside the script only an error's number (tests/com checks the
' source and description).
On Error Resume Next
n = 1
p.Call c, "Refuse", n
CheckError 1234, "", "", "an error raised by the host reaches the script"
p.Call c, "Missing", n
CheckError 438, "", "", "a member the host object lacks"
On Error GoTo 0

Set fake = New FakeListView
Set lv = p.Disguise(fake, "_ListView")
CheckEqual p.NameOf(lv), "ListView", "a disguise is named as its type information says, without the underscore"
CheckEqual lv.Add("k"), "k,10,10", "a short call gets the omitted arguments a control's optional parameters take"
n = "m"
CheckEqual p.Call(lv, "Add", n), "m,10,10", "and so does the library's"
CheckEqual lv.ListItems(2), "item 2", "a property given arguments passes them to its value's default member"
CheckEqual lv.ListItems.Item(3), "item 3", "what a disguise hands back is disguised too"
On Error Resume Next
lv.Refuse "k"
CheckError 1235, "", "", "an error raised inside a disguised method reaches the caller"
lv.Refuse "k", "t"
CheckError 1235, "", "", "also from a call that needed no omitted arguments"
On Error GoTo 0
CheckEqual fake.Runs, 4, "every call ran the method once, a failed one too"
Finish
