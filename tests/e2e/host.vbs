' The library calling back into host objects by name, as the services do (which services.vbs
' shows with by-reference arguments and a host's error): a member the host lacks, a platform
' object's typed by-reference Variant, and the probe's disguise that makes a script class look
' like a control.
' A list view's double: the disguise gives it type information, optional parameters, and a
' property given arguments indexing its value, as the control has.
Class FakeListItems
    Public Default Function Item(Index): Item = "item " & Index: End Function
End Class

Class FakeListView
    Public Runs
    Public ListItems
    Public Function Add(Key, Text, Icon): Runs = Runs + 1: Add = Key & "," & VarType(Text) & "," & VarType(Icon): End Function
    Public Function Refuse(Key, Text): Runs = Runs + 1: Err.Raise 1235, "ListSource", "the list said no": End Function
End Class

Dim p, n, fake, lv
Set p = CreateObject("CeldoProbe.Probe")

' A parameter that type information declares a by-reference Variant gets a reference to a
' Variant that the library owns and frees: an object passed there must not stay alive after.
Set n = p
CheckEqual p.Call(CreateObject("Scripting.Dictionary"), "Exists", n), False, "a platform object's typed by-reference Variant"
Check n Is p, "that argument comes back as it was"

Set fake = New FakeListView
On Error Resume Next
p.Call fake, "Missing", n
CheckError 438, "", "", "a member the host object lacks"
On Error GoTo 0
fake.Runs = 0
Set fake.ListItems = New FakeListItems
Set lv = p.Disguise(fake, "_ListView")
CheckEqual p.NameOf(lv), "ListView", "a disguise is named as its type information says, without the underscore"
n = "m"
CheckEqual lv.Add("k") & " " & p.Call(lv, "Add", n), "k,10,10 m,10,10", "short calls, the script's and the library's, padded as a control's optional parameters"
CheckEqual lv.ListItems(2) & ", " & lv.ListItems.Item(3), "item 2, item 3", "a property given arguments indexes its value, disguised too"
On Error Resume Next
lv.Refuse "k"
CheckError 1235, "", "", "an error raised inside a disguised method reaches the caller"
lv.Refuse "k", "t"
CheckError 1235, "", "", "also from a call that needed no omitted arguments"
On Error GoTo 0
CheckEqual fake.Runs, 4, "every call ran the method once, a failed one too"
Finish
