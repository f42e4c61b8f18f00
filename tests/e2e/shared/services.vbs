' Shared by the service scripts, which name it in an "include:" line: data arrays, and the host's
' data-access object as the service reaches it by name.

' A data array of `columns` columns (columns by rows, as data arrays are), from its cells row
' after row. Wine's VBScript crashes on ReDim of an array declared with parentheses.
Function Matrix(columns, cells)
    Dim a, i
    ReDim a(columns - 1, (UBound(cells) + 1) \ columns - 1)
    For i = 0 To UBound(cells)
        a(i Mod columns, i \ columns) = cells(i)
    Next
    Matrix = a
End Function

' An argument as the data-access double records it: Missing when left out, and for an object
' whether it is Nothing (Wine's TypeName(Nothing) crashes).
Function Shown(v)
    If IsObject(v) Then Shown = (v Is Nothing) Else Shown = v
    If VarType(v) = vbError Then Shown = "Missing"
End Function

' ExecFillArray records what it was given and writes back, by reference, Status, the Give*
' objects and a row limit of 25; GetArray answers Data to a list's query, whose [Pais] the
' Evaluador (itself) fills from the row when there is one. Calls that leave arguments out go
' through the probe's disguise.
Dim released
released = 0

Class DataAccessDouble
    Public HayConexion
    Public Received
    Public Types
    Public Status
    Public GiveHeader
    Public GiveParameters
    Public Data
    Private Sub Class_Initialize(): HayConexion = True: Status = 0: Set GiveHeader = Nothing: Set GiveParameters = Nothing: End Sub
    Private Sub Class_Terminate(): released = released + 1: End Sub
    Public Property Get Evaluador(): Set Evaluador = Me: End Property
    Public Function ReplaceExpresion(text, row)
        ReplaceExpresion = text
        If Not row Is Nothing Then ReplaceExpresion = Replace(text, "[Pais]", row.Item("Pais").Value)
    End Function
    Public Function GetArray(ByRef query, ByRef mode, ByRef st): Received = query: GetArray = Data: End Function
    Public Function ExecFillArray(ByRef query, ByRef mode, ByRef st, ByRef header, ByRef options, ByRef params, ByRef maxRows)
        ' Wine's Join fails on by-reference arguments.
        Received = query & "," & mode & "," & st & "," & Shown(header) & "," & Shown(options) & "," & _
            Shown(params) & "," & Shown(maxRows)
        Types = VarType(query) & "," & VarType(mode) & "," & VarType(st) & "," & VarType(header) & "," & _
            VarType(options) & "," & VarType(params) & "," & VarType(maxRows)
        st = Status
        Set header = GiveHeader
        Set params = GiveParameters
        maxRows = 25
        ExecFillArray = Data
    End Function
End Class
