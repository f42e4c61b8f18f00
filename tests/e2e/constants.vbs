' Celdo.Constants under a real script host: created by ProgID, one identity, no members; the
' enumerations it carries reach the script from the type library with their exact values.
Dim constants, other
Set constants = CreateObject("Celdo.Constants")
Check IsObject(constants), "CreateObject gives an object"
Set other = CreateObject("Celdo.Constants")
Check Not (constants Is other), "each CreateObject makes a new object"
Check constants Is constants, "an object is itself"

On Error Resume Next
Dim value
value = constants.Value
CheckError 438, "", "", "Constants has no members"
On Error GoTo 0

CheckEqual exText, 1014, "exText"
CheckEqual exDataTime, exDateTime, "exDataTime and exDateTime are one value"
CheckEqual exUpdate, exValueList, "exEdit and exRowSourceType share numbers"
CheckEqual SSMaxPermiso, SSColAdjustmen, "the highest right and the column adjustment share 131072"
CheckEqual exLeftLoin, 5371, "irregular names are kept"
CheckEqual exSeparador, 187, "the tag separator"
CheckEqual xntUnknown, 0, "xntUnknown"

Set constants = Nothing
Set other = Nothing
Finish
