' Filling a flex grid of 30,000 rows x 10 columns from VBScript under Wine: every cell is one
' TextMatrix call from Celdo.dll into the script, so this times the service, the COM crossing
' and Wine's script engine together. Run by tools/bench-wine; only the FillFlexGrid call is timed.
Const kRows = 30000
Const kColumns = 10

' A grid that keeps its properties and only counts its cells.
Class FlexGridDouble
    Public Redraw
    Public BackColorBkg
    Public GridColorFixed
    Public GridColor
    Public ForeColor
    Public FixedRows
    Public FixedCols
    Public Rows
    Public Cols
    Public Row
    Public Col
    Public ColSel
    Public FillStyle
    Public CellBackColor
    Public CellForeColor
    Public RowHeightMin
    Public Cells
    Private widths_
    Private Sub Class_Initialize()
        FixedRows = 1
        FixedCols = 1
        Rows = 1
        Cols = 2
        Cells = 0
        Set widths_ = CreateObject("Scripting.Dictionary")
    End Sub
    Public Property Let TextMatrix(r, c, v)
        Cells = Cells + 1
    End Property
    Public Property Let ColWidth(i, v)
        widths_(CStr(i)) = v
    End Property
    Public Property Get ColWidth(i)
        ColWidth = widths_(CStr(i))
    End Property
End Class

Dim svc, grid, data, header, r, c, started, seconds

ReDim data(kColumns - 1, kRows - 1)
For r = 0 To kRows - 1
    For c = 0 To kColumns - 1
        data(c, r) = "r" & r & "c" & c
    Next
Next
Set svc = CreateObject("Celdo.ISService")
Set grid = New FlexGridDouble
Set header = Nothing

started = Timer
svc.FillFlexGrid grid, data, header
seconds = Timer - started
If seconds < 0 Then seconds = seconds + 86400  ' past midnight

WScript.Echo "cells " & kRows * kColumns
WScript.Echo "TextMatrix calls " & grid.Cells
WScript.Echo "grid rows " & grid.Rows & ", columns " & grid.Cols
' Wine's Round ignores its digits.
WScript.Echo "seconds " & Int(seconds * 1000 + 0.5) / 1000
Set grid = Nothing
Set svc = Nothing
WScript.Echo "End of demonstration."
