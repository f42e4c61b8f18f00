' The library calling back into host objects by name, as the control-filling services do:
' a VBScript class instance and a platform object, with by-reference arguments and errors.
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

' A control's double as the services meet it: the probe disguises it as the control would look,
' with type information, optional parameters, and a property given arguments indexing its value.
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
CheckEqual p.NameOf(p), "Probe", "the library's own object keeps its class name"

Set d = CreateObject("Scripting.Dictionary")
d.Add "k", "v"
CheckEqual p.Read(d, "Count"), CLng(1), "a platform object"
' A parameter its type information declares a by-reference Variant gets a reference to a Variant
' that the library owns and frees: an object passed there must not stay alive after the call.
Set n = p
CheckEqual p.Call(d, "Exists", n), False, "a platform object's typed by-reference Variant parameter"
CheckEqual n Is p, True, "that argument comes back as it was"
Set n = Nothing

On Error Resume Next
n = 1
p.Call c, "Refuse", n
' Windows' VBScript also hands over the error's source and description; Wine's gives only the
' number to callers outside the script (the C++ client tests check the full error).
CheckError 1234, "", "", "an error raised by the host reaches the script"
p.Call c, "Missing", n
CheckError 438, "", "", "a member the host object lacks"
p.Read Nothing, "Total"
CheckError 91, "", "", "Nothing has no members"
On Error GoTo 0

Set fake = New FakeListView
Set lv = p.Disguise(fake, "_ListView")
CheckEqual p.NameOf(lv), "ListView", "a disguise is named as its type information says, without the underscore"
CheckEqual lv.Add("k"), "k,10,10", "a short call gets the omitted arguments a control's optional parameters take"
n = "m"
CheckEqual p.Call(lv, "Add", n), "m,10,10", "and so does the library's"
CheckEqual fake.Runs, 2, "each of those calls ran the method once"
CheckEqual lv.ListItems(2), "item 2", "a property given arguments passes them to its value's default member"
CheckEqual lv.ListItems.Item(3), "item 3", "what a disguise hands back is disguised too"
On Error Resume Next
lv.Refuse "k"
CheckError 1235, "", "", "an error raised inside a disguised method reaches the caller"
lv.Refuse "k", "t"
CheckError 1235, "", "", "also from a call that needed no omitted arguments"
On Error GoTo 0
CheckEqual fake.Runs, 4, "a method that raised an error ran once, not once per try"
Finish
