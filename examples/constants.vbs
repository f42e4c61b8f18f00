' Celdo's published vocabulary as a host script sees it.
'
' Host code names the numbers the library works with (data types, edit modes, row-source
' kinds...) through the enumerations of Celdo's type library; Celdo.Constants is the class that
' carries them. Here they reach the script the way <reference object="Celdo.Constants"/> brings
' them to a .wsf file.

Dim constants
Set constants = CreateObject("Celdo.Constants")
WScript.Echo "Created Celdo.Constants: " & IsObject(constants)
WScript.Echo ""

Sub Show(name, value)
    WScript.Echo "  " & Left(name & Space(22), 22) & Right(Space(8) & value, 8)
End Sub

WScript.Echo "Data types (ExDataType)"
Show "exBoolean", exBoolean
Show "exLong", exLong
Show "exCurrency", exCurrency
Show "exText", exText
Show "exDataTime", exDataTime
Show "exDateTime", exDateTime
WScript.Echo ""
WScript.Echo "Edit modes (exEdit) and row sources (exRowSourceType) share numbers"
Show "exInsert", exInsert
Show "exUpdate", exUpdate
Show "exQuery", exQuery
Show "exValueList", exValueList
WScript.Echo ""
WScript.Echo "Rights flags (SSAtributoAcceso), combined with Or"
Show "SSSelect Or SSUpdate", SSSelect Or SSUpdate
Show "SSMaxPermiso", SSMaxPermiso
WScript.Echo ""
WScript.Echo "End of demonstration."
