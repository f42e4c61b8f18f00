' Some 130,000 objects made and dropped by a script: fields, rows, records and audit fields,
' shared fields, a field among its own children and a row inside its own field's children.
' Collections run as objects are made, without touching what the script still holds; at unload
' the harness checks that nothing is left alive and that DllCanUnloadNow answers S_OK.
Dim reg, row, kept, audit, i, j

Set kept = CreateObject("Celdo.clsCeldos")
kept.Add "Codigo", "", exLong, , , , , , 7
kept.Item(1).Children.Append kept.Item(1)

Set reg = CreateObject("Celdo.clsRegistro")
For i = 1 To 2000
    Set row = CreateObject("Celdo.clsCeldos")
    For j = 1 To 10
        row.Add "C" & j, "", exText, , , , , , "v" & j
    Next
    row.Item(1).Children.Append row.Item(1)
    row.Item(2).Children.Appends row
    Set audit = CreateObject("Celdo.CeldosSeguimiento")
    row.Appends audit.Registro()
    reg.Add row, "r" & i
    If i Mod 250 = 0 Then reg.Clear
Next

CheckEqual reg.Count, CLng(0), "the records were dropped along the way"
CheckEqual row.Item("C10").Value, "v10", "the last row is intact"
Check row.Item(2).Children.Item(2) Is row.Item(2), "and so are its cycles"
CheckEqual kept.Item("Codigo").Value, CLng(7), "a row held from the start survived every collection"
Check kept.Item(1).Children.Item(1) Is kept.Item(1), "with its cycle"
Finish
