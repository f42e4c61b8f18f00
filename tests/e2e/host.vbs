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

Dim p, c, n, d
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
Finish
