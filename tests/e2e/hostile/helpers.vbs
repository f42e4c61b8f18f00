' The hand-written half of the hostile-argument walk (the calls themselves are generated from
' the declarations): the values a careless or hostile host passes, a fresh object of each
' class with some state in it, and a fingerprint of that state to tell whether a refused call
' left the object as it was.
Dim wrong, hostiles, walked, refused
Set wrong = CreateObject("Celdo.Constants")
' Nothing, Null, Nothing, an array, text, a huge text, numbers out of every range, an object of
' the wrong class, a date and a Boolean.
hostiles = Array(Empty, Null, Nothing, Array(1, "dos", Null), "texto", String(1000000, "x"), 1E+300, -32769, wrong, Now, True)
Const kHostileValues = 11
walked = 0
refused = 0

' Hostile value i into b.
Sub Hostile(ByRef b, i)
    If IsObject(hostiles(i)) Then Set b = hostiles(i) Else b = hostiles(i)
End Sub

' For Set: only objects get that far in the script engine.
Sub HostileObject(ByRef b, i)
    If i Mod 2 = 0 Then Set b = Nothing Else Set b = wrong
End Sub

Function Fresh(cls)
    Dim o
    Set o = CreateObject("Celdo." & cls)
    Select Case cls
        Case "clsCeldo"
            o.Name = "Campo": o.Value = "valor"
            o.Children.Add "Hijo", "", exText
            o.Attributes.Add "tipo", "", exText, , , , , , "a"
        Case "clsCeldos"
            o.Add "A", "", exText, , , , , , "uno"
            o.Add "B", "", exLong, , , True, , , 2
        Case "clsRegistro": o.Add Fresh("clsCeldos"), "k"
        Case "CeldosSeguimiento": o.NProfile.Value = "ana"
    End Select
    Set Fresh = o
End Function

Function Fingerprint(o)
    On Error Resume Next
    Dim s, e, a
    e = ""
    a = ""
    ' Wine reports the default interface's name, Windows the class's.
    s = Replace(TypeName(o), "_", "") & ":"
    Select Case Left(s, Len(s) - 1)
        Case "clsCeldo"
            s = s & o.XMLAttribute(e, a) & "|" & TypeName(o.Value) & "|" & o.Children.Count & "|" & _
                o.Attributes.Count & "|" & TypeName(o.ExtendProperties) & "|" & o.XML("")
        Case "clsCeldos": s = s & o.Count & "|" & o.XMLAttribute("") & "|" & o.XML("")
        Case "clsRegistro": s = s & o.Count & "|" & o.Exist("k")
        Case "CeldosSeguimiento": s = s & o.NProfile.Name & o.UProfile.Name & o.NFecha.Name & o.UFecha.Name & o.NProfile.Value
    End Select
    Fingerprint = s
    Err.Clear
End Function

' After each call: a refused call must leave the object as it was.
Sub Judge(what, i, before, target, number)
    checks_run = checks_run + 1
    walked = walked + 1
    If number = 0 Then Exit Sub
    refused = refused + 1
    If Fingerprint(target) <> before Then Failed what & " with hostile value " & i, "changed the object although it failed (error " & number & ")"
End Sub
