' The platform's recorded conversions (platform_record.tsv) through a script host, in the settings
' the host runs under: each row's input assigned to the test probe's property of that subtype,
' which coerces with the runtime's conversions, or rounded by a field's Redondear.
' Arguments: the table's path and the settings' name (en-US or es-ES).
Dim probe, field, table, setting, point, rowPoint, row, skipped, lineNumber
Set probe = CreateObject("CeldoProbe.Probe")
Set field = CreateObject("Celdo.clsCeldo")
setting = WScript.Arguments(1)
point = "."
If setting = "es-ES" Then point = ","

' "text" with C escapes and \uXXXX; Null for a character this host cannot write (no ChrW).
Function Unescape(quoted)
    Dim parts, i, code, escapes
    escapes = Array(12, 10, 13, 9, 11)
    parts = Split(Mid(quoted, 2, Len(quoted) - 2), "\")
    Unescape = parts(0)
    For i = 1 To UBound(parts)
        If Left(parts(i), 1) = "u" Then
            code = CLng("&H" & Mid(parts(i), 2, 4))
            If code = &H20AC Then code = 128 ' the euro sign in the host's code page
            If code > 255 Then Unescape = Null: Exit Function
            Unescape = Unescape & Chr(code) & Mid(parts(i), 6)
        Else
            Unescape = Unescape & Chr(escapes(InStr("fnrtv", Left(parts(i), 1)) - 1)) & Mid(parts(i), 2)
        End If
    Next
End Function

' A number written with a point, exactly as a C reader takes it when it has few digits.
Function Num(text)
    Dim parts, e
    parts = Split(LCase(text) & "e0", "e")
    e = CLng(parts(1))
    If InStr(parts(0), ".") > 0 Then e = e - Len(parts(0)) + InStr(parts(0), ".")
    Num = CDbl(Replace(parts(0), ".", ""))
    If e > 0 Then Num = Num * 10 ^ e Else Num = Num / 10 ^ -e
End Function

' yyyy-mm-dd, *-mm-dd (this year), hh:mm:ss or both, as a serial.
Function Calendar(text)
    Dim t, p
    For Each t In Split(Replace(text, "*", Year(Date)), " ")
        p = Split(Replace(t, ":", "-"), "-")
        If InStr(t, ":") > 0 Then Calendar = Calendar + CDbl(TimeSerial(p(0), p(1), p(2))) Else Calendar = Calendar + CDbl(DateSerial(p(0), p(1), p(2)))
    Next
End Function

Function Cell(text) ' Empty stays Empty
    Dim value
    If Left(text, 1) = """" Then Cell = Unescape(Replace(text, ".", rowPoint))
    If text = "Null" Then Cell = Null
    If InStr(text, " ") = 0 Or Left(text, 1) = """" Then Exit Function
    value = Mid(text, InStr(text, " ") + 1)
    Select Case Left(text, InStr(text, " ") - 1)
    Case "Boolean": Cell = (value = "True")
    Case "Byte": Cell = CByte(value)
    Case "Integer": Cell = CInt(value)
    Case "Long": Cell = CLng(value)
    Case "Single": Cell = CSng(Num(value))
    Case "Double": Cell = Num(value)
    Case "Currency": Cell = CCur(Num(value))
    Case "Date"
        If InStr(value, ":") > 0 Or Mid(value, 5, 1) = "-" Or Left(value, 1) = "*" Then Cell = CDate(Calendar(value)) Else Cell = CDate(Num(value))
    End Select
End Function

' Subtype and value; Currency by its text, all four decimals, Double and Date near enough.
Function Same(got, text)
    Dim want
    If Left(text, 9) = "Currency " Then Same = VarType(got) = vbCurrency And CStr(got) = Replace(Mid(text, 10), ".", point): Exit Function
    want = Cell(text)
    Same = VarType(got) = VarType(want)
    If Not Same Or IsNull(want) Or IsEmpty(want) Then Exit Function
    Select Case VarType(want)
    Case vbDouble: Same = Abs(got - want) <= 1E-14 * Abs(want)
    Case vbDate: Same = Abs(CDbl(got) - CDbl(want)) < 1E-9
    Case Else: Same = got = want
    End Select
End Function

Sub Run(row)
    Dim v, got, name, ok
    If row(0) = "local" Then rowPoint = point Else rowPoint = "."
    v = Cell(row(2))
    If (row(0) <> "any" And row(0) <> "local" And row(0) <> setting) Or IsNull(v) And Left(row(2), 1) = """" Or _
       Left(row(1), 7) = "Round -" Then
        skipped = skipped + 1 ' another setting's row, a text this host cannot write, or Redondear's tens
        Exit Sub
    End If
    On Error Resume Next
    Select Case row(1)
    Case "Byte": probe.Tiny = v: got = probe.Tiny
    Case "Integer": probe.Small = v: got = probe.Small
    Case "Long": probe.Number = v: got = probe.Number
    Case "Single": probe.Ratio = v: got = probe.Ratio
    Case "Double": probe.Real = v: got = probe.Real
    Case "Currency": probe.Amount = v: got = probe.Amount
    Case "Boolean": probe.Flag = v: got = probe.Flag
    Case "Date": probe.When = v: got = probe.When
    Case "String": probe.Text = v: got = probe.Text
    Case Else: got = field.Redondear(v, CInt(Mid(row(1), 7)))
    End Select
    name = "line " & lineNumber & ": " & row(1) & " of " & row(2)
    If Left(row(3), 6) = "error " Then
        CheckError CLng(Mid(row(3), 7)), "", "", name
    ElseIf Err.Number <> 0 Then
        CheckError 0, "", "", name
    Else
        ok = False
        ok = Same(got, row(3)) ' an error leaves it False
        CheckEqual ok And Err.Number = 0, True, name & " gave " & got
    End If
    On Error GoTo 0
End Sub

Set table = CreateObject("Scripting.FileSystemObject").OpenTextFile(WScript.Arguments(0), 1)
Do Until table.AtEndOfStream
    row = table.ReadLine
    lineNumber = lineNumber + 1
    If Left(row, 1) <> "#" And Left(row, 9) <> "settings" & vbTab Then Run Split(row, vbTab)
Loop
table.Close
WScript.Echo "rows left to other settings or out of this host's reach: " & skipped
Finish
