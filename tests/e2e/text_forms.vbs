' The text forms from VBScript: a row written as XML (escaped and in the ISO-8859 byte form),
' clip lines, the attribute list and Parse, a field tree loaded back with LoadElement (its
' position passed by reference), field metadata by name, and the errors hosts see. Wine's
' VBScript has no ChrW, so byte values are written with Chr, which maps 160 to 255 as they are.
Dim row, back, f, root, child, loaded, xml, pos, result, prop, delim, attrs, list, enc, memo, i

Set row = CreateObject("Celdo.clsCeldos")
row.Add "Codigo", "", exText, , , True
row.Add "Nombre", "", exText, , , , , , "Peña & hijos"
row.Add "Ciudad", "", exText, , , , , , "Güemes"
row("Nombre").Caption = "Razón social"

CheckEqual row.XML("UTF-8"), "<Codigo></Codigo>" & vbCrLf & "<Nombre>Pe&ntilde;a &amp; hijos</Nombre>" & vbCrLf & _
    "<Ciudad>Güemes</Ciudad>" & vbCrLf, "XML escapes lower-case accents only"
CheckEqual row.XML("ISO-8859-1"), "<Codigo></Codigo>" & vbCrLf & "<Nombre>Pe&ntilde;a &amp; hijos</Nombre>" & vbCrLf & _
    "<Ciudad>G" & Chr(195) & Chr(188) & "emes</Ciudad>" & vbCrLf, "an ISO-8859 name writes the UTF-8 bytes"

CheckEqual row.ClipAttribute, vbTab & "Peña & hijos" & vbTab & "Güemes" & vbTab, "ClipAttribute"
CheckEqual row.ClipHeader, "Codigo" & vbTab & "Razón social" & vbTab & "Ciudad", "ClipHeader"
CheckEqual row.Clip(), vbTab & "Peña & hijos" & vbTab & "Güemes" & vbTab, "Clip of leaves"
CheckEqual row.ClipNames(), "Codigo,Nombre,Ciudad", "ClipNames with both arguments left out"
prop = Empty
delim = " | "
CheckEqual row.ClipNames(prop, delim), "Codigo | Nombre | Ciudad", "ClipNames with a delimiter"
CheckEqual prop, "Name", "the property name is written back"
CheckEqual row.ClipNames("Caption", ";"), "Codigo;Razón social;Ciudad", "ClipNames of captions"

For Each enc In Array("UTF-8", "ISO-8859-1")
    attrs = row.XMLAttribute(enc)
    Set back = CreateObject("Celdo.clsCeldos")
    CheckEqual back.Parse(enc, attrs), True, "Parse " & enc
    CheckEqual back.Count, CLng(3), "the required empty field is written too (" & enc & ")"
    CheckEqual back("Nombre").Value, "Peña & hijos", "Parse restores accents (" & enc & ")"
    CheckEqual back("ciudad").Value, "Güemes", "and accents outside the entity table (" & enc & ")"
Next
CheckEqual row.XMLAttribute("UTF-8"), " Codigo="""" Nombre=""Pe&ntilde;a &amp; hijos"" Ciudad=""Güemes""", "XMLAttribute"

' Texts past 32,767 characters work.
memo = String(40000, "x") & "ñ"
row("Nombre").Value = memo
attrs = row.XMLAttribute("ISO-8859-1")
Set back = CreateObject("Celdo.clsCeldos")
back.Parse "ISO-8859-1", attrs
CheckEqual back("Nombre").Value, memo, "a long value"

' Parse errors leave what came before applied.
Set back = CreateObject("Celdo.clsCeldos")
attrs = "A=""1"" Codigo=12"
On Error Resume Next
back.Parse "", attrs
CheckError -2147221504, "Celdo.Parse", "Malformed quotation", "a value without quotes"
attrs = "Co digo=""1"""
back.Parse "", attrs
CheckError -2147221504, "Celdo.Parse", "Illegal element name: Co digo", "a name with a blank"
On Error GoTo 0
CheckEqual back("A").Value, "1", "the attribute before the error"

' A field tree, written and loaded back.
Set root = CreateObject("Celdo.clsCeldo")
root.Name = "Cliente"
root.Attributes.Add "id", "", exText, , , , , , "7"
Set child = root.Children.Add("Nombre", "", exText, , , , , , "Núñez")
root.Children.Add "Nota", "", exText, , , , , , "línea 1" & vbCrLf & "línea 2"
xml = root.XML("UTF-8")
CheckEqual xml, "<Cliente id=""7"">" & vbCrLf & "    <Nombre>N&uacute;&ntilde;ez</Nombre>" & vbCrLf & _
    "    <Nota>l&iacute;nea 1" & vbCrLf & "l&iacute;nea 2</Nota>" & vbCrLf & "</Cliente>" & vbCrLf, "a tree"
xml = xml & "<Otro/>"
Set loaded = CreateObject("Celdo.clsCeldo")
pos = 0
result = loaded.LoadElement("UTF-8", pos, xml)
CheckEqual result, pos, "LoadElement returns the position it wrote back"
CheckEqual pos, CLng(InStr(xml, "<Otro") - 1), "past the element and its line end"
CheckEqual loaded.Name, "Cliente", "loaded name"
CheckEqual loaded.Attributes("id").Value, "7", "loaded attribute"
CheckEqual loaded.Children.Count, CLng(2), "loaded children"
CheckEqual loaded.Children("Nota").Value, "línea 1" & vbCrLf & "línea 2", "a value with a line break"
loaded.LoadElement "UTF-8", pos, xml
CheckEqual loaded.Name, "Otro", "the next element"
CheckEqual loaded.NodeType, CLng(xntEmpty), "an empty element"
CheckEqual loaded.Children.Count, CLng(0), "children replaced"

On Error Resume Next
pos = 0
xml = "<a>x</b>"
loaded.LoadElement "", pos, xml
CheckError -2147221504, "Celdo.eat", "Badly nested tags", "wrong end tag"
xml = "<a x=""1"""
loaded.LoadElement "", pos, xml
CheckError -2147221504, "Celdo.eat", "Tag not closed @ 1", "a tag without its end"
On Error GoTo 0
CheckEqual loaded.Name, "Otro", "a failed load changes nothing"

' Field metadata by name, and as attributes.
Set f = CreateObject("Celdo.clsCeldo")
f.Name = "Codigo"
f.SetItem "Caption", "Código"
f.SetItem "Required", "1"
f.SetItem "Ucase", "TRUE"
f.SetItem "Round", "2"
CheckEqual f.Required, True, "SetItem of a flag from text"
CheckEqual f.UpperCase, True, "Ucase is the upper-case flag"
CheckEqual f.Redondeo, CInt(2), "Round is the rounding"
CheckEqual f.Item("caption"), "Código", "Item by name"
enc = "UTF-8"
list = "Name,Caption,Required"
attrs = f.XMLAttribute(enc, list)
CheckEqual attrs, " Name=""Codigo"" Caption=""C&oacute;digo"" Required=""True""", "field XMLAttribute"
Set back = CreateObject("Celdo.clsCeldo")
CheckEqual back.Parse(enc, attrs), True, "field Parse"
CheckEqual back.Caption, "Código", "field Parse restores the caption"
CheckEqual back.Required, True, "and the flag"
xml = "A&ntilde;o G" & Chr(195) & Chr(188) & "emes"
CheckEqual f.Decondign("ISO-8859-1", xml), "Año Güemes", "Decondign undoes the byte form and the entities"
Finish
