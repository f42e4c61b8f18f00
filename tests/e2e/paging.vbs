' Page pointers from VBScript: pages recorded from a script's own data array and field rows,
' found by position, by key and with For Each, and the errors a script gets. Wine's script
' host cannot sink events: Requery is tested from a C++ client.
Dim pages, header, data, first, last, page, p, text, i

Set pages = CreateObject("Celdo.Apuntadores")
pages.PrimaryKey = "Serie, Numero"
CheckEqual pages.MaxRows, CLng(100), "a hundred rows a page unless set"
On Error Resume Next
pages.MaxRows = 0
CheckError 380, "", "", "a page of no rows is refused"
On Error GoTo 0
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
Set last = CreateObject("Celdo.clsCeldos")
last.AddParameter "Serie", exText, "B"
last.AddParameter "Numero", exLong, 7
Set page = pages.Add(first, last)
CheckEqual page.Index & " " & pages.Count & " " & pages.Current.Last.Item("Numero").Value, "2 2 7", _
    "Add with its optional arguments omitted: the current page"
Check pages("uno") Is pages.Item(1), "found by key through the default member, the same object twice"
text = ""
For Each p In pages
    text = text & p.Index & ":" & p.Key & ";"
Next
CheckEqual text, "1:uno;2:;", "For Each walks the pages in order"
Check pages.Avanzar(), "Avanzar asks for the next page when the current one was full"
CheckEqual pages.Retroceder(), True, "Retroceder asks for the page before the current one"
pages.Remove "uno"
CheckEqual page.Index & " " & pages.Count, "1 1", "Remove renumbers the pages kept"
On Error Resume Next
Set page = pages.Item(5)
CheckError 5, "", "", "a page that is not there"
On Error GoTo 0
pages.Filter = "Activo = 1"
CheckEqual pages.Count & " " & pages.Filter, "0 Activo = 1", "a new filter starts over"
Set pages = Nothing
Finish
