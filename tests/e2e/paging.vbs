' Page pointers from VBScript: a page recorded from a script's own data array, another with Add's
' optional arguments left out, the default member, For Each, moving and filtering, and a refused
' value's error. The
' paging rules have native tests; Wine's script host cannot sink events, so Requery is tested
' from a C++ client (tests/com/paging_test.cpp).
Dim pages, header, data, first, page, p, text, i
Set pages = CreateObject("Celdo.Apuntadores")
pages.PrimaryKey = "Serie, Numero"
' The default page size and a pointer's key-only fields have no native check.
CheckEqual pages.MaxRows, CLng(100), "a hundred rows a page unless set"
pages.MaxRows = 3

Set header = CreateObject("Celdo.clsCeldos")
header.Add "Serie", "", exText
header.Add "Numero", "", exLong
header.Add "Cliente", "", exText
ReDim data(2, 2)
For i = 0 To 2
    data(0, i) = "A"
    data(1, i) = 10 + i
    data(2, i) = "Cliente " & i
Next
Set page = pages.AddRows(data, header, "uno")
CheckEqual page.First.Item("Numero").Value & "-" & page.Last.Item("Numero").Value & " of " & page.Rows, "10-12 of 3", _
    "AddRows keeps the first and last rows' key"
CheckEqual page.Last.Count, CLng(2), "and only the key's fields"

Set first = CreateObject("Celdo.clsCeldos")
first.AddParameter "Serie", exText, "B"
first.AddParameter "Numero", exLong, 1
Set page = pages.Add(first, first)
CheckEqual page.Index & " " & pages.Count, "2 2", "Add with its optional arguments left out"
Check pages.Current Is page, "the page added is the current one"
Check pages("uno") Is pages.Item(1), "found by key through the default member, the same object twice"
text = ""
For Each p In pages
    text = text & p.Index & ":" & p.Key & ";"
Next
CheckEqual text, "1:uno;2:;", "For Each walks the pages in order"

' Their Requery goes unheard here: what they answer, and a new filter starting over.
CheckEqual pages.Avanzar() & "," & pages.Retroceder(), "True,True", "Avanzar and Retroceder ask for a page"
pages.Filter = "Cliente = 12"
CheckEqual pages.Filter & " " & pages.Count, "Cliente = 12 0", "a new Filter is kept and clears the pages"

On Error Resume Next
pages.MaxRows = 0
CheckError 380, "", "", "a page of no rows is refused"
On Error GoTo 0
Set pages = Nothing
Finish
