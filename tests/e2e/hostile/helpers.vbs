' The hand-written half of the hostile-argument walk (the calls themselves are generated from
' the declarations): the values a careless or hostile host passes, a fresh object of each
' class with some state in it, and a fingerprint of that state to tell whether a refused call
' left the object as it was.
Dim huge, wrong, walked, refused
huge = String(1000000, "x")
Set wrong = CreateObject("Celdo.Constants")
walked = 0
refused = 0
Const kHostileValues = 11

' Hostile value i into b: nothing, Null, Nothing, an array, text, a huge text, numbers out of
' every range, an object of the wrong class, a date, and a Boolean.
Sub Hostile(ByRef b, i)
    Select Case i
        Case 0: b = Empty
        Case 1: b = Null
        Case 2: Set b = Nothing
        Case 3: b = Array(1, "dos", Null)
        Case 4: b = "texto"
        Case 5: b = huge
        Case 6: b = 1E+300
        Case 7: b = -32769
        Case 8: Set b = wrong
        Case 9: b = Now
        Case 10: b = True
    End Select
End Sub

' For Set: only objects get that far in the script engine.
Sub HostileObject(ByRef b, i)
    If i Mod 2 = 0 Then Set b = Nothing Else Set b = wrong
End Sub

Function Fresh(cls)
    Dim o, r
    Set o = CreateObject("Celdo." & cls)
    Select Case cls
        Case "clsCeldo"
            o.Name = "Campo"
            o.Value = "valor"
            o.Children.Add "Hijo", "", exText
            o.Attributes.Add "tipo", "", exText, , , , , , "a"
        Case "clsCeldos"
            o.Add "A", "", exText, , , , , , "uno"
            o.Add "B", "", exLong, , , True, , , 2
        Case "clsRegistro"
            Set r = CreateObject("Celdo.clsCeldos")
            r.Add "A", "", exText, , , , , , "uno"
            o.Add r, "k"
        Case "CeldosSeguimiento"
            o.NProfile.Value = "ana"
    End Select
    Set Fresh = o
End Function

Function Fingerprint(o)
    On Error Resume Next
    Dim s, e, a
    e = ""
    a = ""
    s = TypeName(o) & ":"
    Select Case TypeName(o)
        Case "clsCeldo"
            s = s & o.XMLAttribute(e, a) & "|" & TypeName(o.Value) & "|" & o.Children.Count & "|" & _
                o.Attributes.Count & "|" & TypeName(o.ExtendProperties) & "|" & o.XML("")
        Case "clsCeldos"
            s = s & o.Count & "|" & o.XMLAttribute("") & "|" & o.XML("")
        Case "clsRegistro"
            s = s & o.Count & "|" & o.Exist("k")
        Case "CeldosSeguimiento"
            s = s & o.NProfile.Name & o.UProfile.Name & o.NFecha.Name & o.UFecha.Name & o.NProfile.Value
    End Select
    Fingerprint = s
    Err.Clear
End Function

' After each call: a refused call must leave the object as it was.
Sub Judge(what, i, before, target, number)
    checks_run = checks_run + 1
    walked = walked + 1
    If number <> 0 Then
        refused = refused + 1
        If Fingerprint(target) <> before Then
            Failed what & " with hostile value " & i, "changed the object although it failed (error " & number & ")"
        End If
    End If
End Sub
