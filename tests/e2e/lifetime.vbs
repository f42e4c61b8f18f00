' Some 130,000 objects made and dropped by a script: fields, rows, records and audit fields,
' shared fields, a field among its own children and a row inside its own field's children.
' Collections run as objects are made, without touching what the script still holds; at unload
' the harness checks that nothing is left alive and that DllCanUnloadNow answers S_OK.
Dim reg, row, kept, i, j
Set kept = CreateObject("Celdo.clsCeldos")
kept.Add "Codigo", "", exLong, , , , , , 7
kept(1).Children.Append kept(1)
Set reg = CreateObject("Celdo.clsRegistro")
For i = 1 To 2000
    Set row = CreateObject("Celdo.clsCeldos")
    For j = 1 To 10
        row.Add "C" & j, "", exText, , , , , , "v" & j
    Next
    row(1).Children.Append row(1)
    row(2).Children.Appends row
    row.Appends CreateObject("Celdo.CeldosSeguimiento").Registro()
    reg.Add row, "r" & i
    If i Mod 250 = 0 Then reg.Clear
Next
CheckEqual reg.Count & " " & row("C10").Value, "0 v10", "the records dropped along the way, the last row intact"
Check row(2).Children(2) Is row(2) And kept(1).Children(1) Is kept(1), "and its cycles, and a row held from the start"
CheckEqual kept("Codigo").Value, CLng(7), "which survived every collection"
Finish
