' The text forms from VBScript: accented text through the script's code page and the byte form,
' a long text, a property name and a position written back by reference, arguments left out, and
' a reader's error as the script sees it. The forms themselves have native tests (tests/fields,
' tests/collections, tests/xml). Wine's VBScript has no ChrW: Chr gives bytes 160 to 255.
Dim row, back, loaded, xml, pos, result, prop, delim, attrs, memo
Set row = CreateObject("Celdo.clsCeldos")
row.Add "Codigo", "", exText, , , True
row.Add "Nombre", "", exText, , , , , , "Peña & hijos"
row.Add "Ciudad", "", exText, , , , , , "Güemes"

CheckEqual row.XML("ISO-8859-1"), "<Codigo></Codigo>" & vbCrLf & "<Nombre>Pe&ntilde;a &amp; hijos</Nombre>" & vbCrLf & _
    "<Ciudad>G" & Chr(195) & Chr(188) & "emes</Ciudad>" & vbCrLf, "an ISO-8859 name writes the UTF-8 bytes"
attrs = row.XMLAttribute("ISO-8859-1")
Set back = CreateObject("Celdo.clsCeldos")
CheckEqual back.Parse("ISO-8859-1", attrs), True, "Parse what XMLAttribute wrote"
CheckEqual back("Nombre").Value & "|" & back("ciudad").Value, "Peña & hijos|Güemes", "the accents come back"

memo = String(40000, "x") & "ñ"
row("Nombre").Value = memo
CheckEqual row("Nombre").Value, memo, "a text past 32,767 characters"

CheckEqual row.ClipNames(), "Codigo,Nombre,Ciudad", "ClipNames with both arguments left out"
prop = Empty
delim = " | "
CheckEqual row.ClipNames(prop, delim), "Codigo | Nombre | Ciudad", "ClipNames with a delimiter"
CheckEqual prop, "Name", "the property name is written back"

xml = "<Cliente id=""7"">" & vbCrLf & "    <Nombre>N&uacute;&ntilde;ez</Nombre>" & vbCrLf & "</Cliente>" & vbCrLf & "<Otro/>"
Set loaded = CreateObject("Celdo.clsCeldo")
pos = 0
result = loaded.LoadElement("UTF-8", pos, xml)
CheckEqual result, pos, "LoadElement returns the position it wrote back"
CheckEqual pos, CLng(InStr(xml, "<Otro") - 1), "past the element and its line end"
CheckEqual loaded.Children("Nombre").Value, "Núñez", "a child's value"
loaded.LoadElement "UTF-8", pos, xml
CheckEqual loaded.Name, "Otro", "the next element, from the position written back"

On Error Resume Next
pos = 0
xml = "<a>x</b>"
loaded.LoadElement "", pos, xml
CheckError -2147221504, "Celdo.eat", "Badly nested tags", "wrong end tag"
On Error GoTo 0
Finish
