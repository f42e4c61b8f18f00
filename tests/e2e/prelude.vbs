' Checks shared by every VBScript test; the harness puts this file before the test itself, after
' Option Explicit and the type library's enumerations. A test ends by calling Finish, which
' prints the line the harness looks for.
Dim checks_run, checks_failed
checks_run = 0: checks_failed = 0

Sub Failed(name, detail)
    checks_failed = checks_failed + 1
    WScript.Echo "FAILED " & name & ": " & detail
End Sub

Sub Check(condition, name): CheckEqual CBool(condition), True, name: End Sub

' Equal in subtype and in value.
Sub CheckEqual(actual, expected, name)
    checks_run = checks_run + 1
    If VarType(actual) <> VarType(expected) Then
        Failed name, "subtype " & VarType(actual) & ", expected " & VarType(expected)
    ElseIf IsNull(actual) Or IsEmpty(actual) Then
    ElseIf actual <> expected Then
        Failed name, "got [" & actual & "], expected [" & expected & "]"
    End If
End Sub

' To be called right after a statement run under On Error Resume Next; clears the error. An
' empty source or description is not compared.
Sub CheckError(number, source, description, name)
    checks_run = checks_run + 1
    If Err.Number <> number Then
        Failed name, "error " & Err.Number & " (" & Err.Description & "), expected " & number
    ElseIf (source <> "" And Err.Source <> source) Or (description <> "" And Err.Description <> description) Then
        Failed name, "error from [" & Err.Source & "]: [" & Err.Description & "], expected [" & source & "]: [" & description & "]"
    End If
    Err.Clear
End Sub

Sub Finish()
    If checks_failed = 0 Then WScript.Echo "PASSED " & checks_run & " checks" Else Failed "", checks_failed & " of " & checks_run & " checks"
End Sub
