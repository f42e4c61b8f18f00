' Page pointers from VBScript: a page recorded from a script's own data array, another with Add's
' optional arguments left out, the default member and For Each. The paging rules have native
' tests; Wine's script host cannot sink events, so Requery and EnterCell are tested from a C++
' client (tests/com/events_test.cpp).
' include: shared/services.vbs
Dim pages, header, first, page, p, text
Set pages = CreateObject("Celdo.Apuntadores")
pages.PrimaryKey = "Serie, Numero"
' The default page size and a pointer's key-only fields have no native check.
CheckEqual pages.MaxRows & " " & pages.PrimaryKey, "100 Serie, Numero", "a hundred rows a page unless set"
pages.MaxRows = 3
Set header = CreateObject("Celdo.clsCeldos")
header.Add "Serie", "", exText
header.Add "Numero", "", exLong
header.Add "Cliente", "", exText
Set page = pages.AddRows(Matrix(3, Array("A", 10, "Cliente 0", "A", 11, "Cliente 1", "A", 12, "Cliente 2")), header, "uno")
CheckEqual page.First.Item("Numero").Value & "-" & page.Last.Item("Numero").Value & " of " & page.Rows & " by " & page.Last.Count, _
    "10-12 of 3 by 2", "AddRows keeps the first and last rows' key, and only the key's fields"
Set first = CreateObject("Celdo.clsCeldos")
first.AddParameter "Serie", exText, "B"
first.AddParameter "Numero", exLong, 1
Set page = pages.Add(first, first)
CheckEqual page.Index & " " & pages.Count, "2 2", "Add with its optional arguments left out"
Set pages.Control = header
Check pages.Current Is page And pages("uno") Is pages.Item(1) And pages.Control Is header, "one object behind every path"
text = ""
For Each p In pages
    text = text & p.Index & ":" & p.Key & ";"
Next
CheckEqual text, "1:uno;2:;", "For Each walks the pages in order"
Set pages.Control = Nothing
Set pages = Nothing
Finish
