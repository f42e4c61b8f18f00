' Forms from VBScript against real COM, through the control doubles disguised by the test
' probe. The rules have native tests (tests/services); this keeps what only a script host shows:
' the form's controls walked through the platform's enumerator, a combo's query completed by the
' host's own evaluator from the row the library hands it, and the platform's picture loader.
' include: ../../examples/doubles/controls.vbs
' include: shared/services.vbs

Dim svc, probe, da, row, frm, txt, cbo, img, fso, path

Set svc = CreateObject("Celdo.ISService")
Set probe = CreateObject("CeldoProbe.Probe")
Set da = New DataAccessDouble
da.Data = Matrix(2, Array(10, "Rosario", 20, "Mendoza"))
Set svc.Ex = probe.Disguise(da, "DataAccess")

Set row = CreateObject("Celdo.clsCeldos")
row.Add "Nombre", "", exText, 40, , , , , "Ana"
row.Add "Ciudad", "", exLong, , , , , , 20
row.Add "Pais", "", exLong, , , , , , 54
row.Add "Foto", "", exText
row.Item("Ciudad").RowSource = "Select Id, Nombre From Ciudades Where Pais = [Pais]"
Set frm = New FormDouble
Set txt = frm.Place(New ControlDouble, "TextBox", "txtNombre", "Cliente")
Set cbo = frm.Place(New ListDouble, "ComboBox", "cboCiudad", "Cliente")
Set img = frm.Place(New ControlDouble, "Image", "imgFoto", "Cliente")

svc.FillForm frm, row, "Cliente"
CheckEqual txt.Text, "Ana", "FillForm writes the controls that the form's enumerator gives"
CheckEqual cbo.Listing & " at " & cbo.ListIndex & " for " & da.Received, _
    "Rosario/10; Mendoza/20 at 1 for Select Id, Nombre From Ciudades Where Pais = 54", "a combo filled from its field's query, the row's values in it"
CheckEqual img.Picture.Type, 0, "an empty picture for a field without a picture file"

' The platform's picture loader: a 1 x 1 bitmap written here and loaded through the field; a
' missing file is skipped quietly.
Set fso = CreateObject("Scripting.FileSystemObject")
path = fso.BuildPath(fso.GetSpecialFolder(2), "celdo-test.bmp")
fso.CreateTextFile(path, True).Write "BM" & Chr(58) & String(7, Chr(0)) & Chr(54) & String(3, Chr(0)) & Chr(40) & _
    String(3, Chr(0)) & Chr(1) & String(3, Chr(0)) & Chr(1) & String(3, Chr(0)) & Chr(1) & Chr(0) & Chr(24) & _
    String(5, Chr(0)) & Chr(4) & String(19, Chr(0)) & Chr(16) & Chr(32) & Chr(48) & Chr(0)
row.Item("Foto").RowSource = path
row.Item("Foto").Value = "x"
svc.FillForm frm, row, "Cliente"
CheckEqual img.Picture.Type, 1, "a bitmap loaded by the platform's picture loader"
row.Item("Foto").RowSource = path & ".missing"
Set img.Picture = Nothing
svc.FillForm frm, row, "Cliente"
Check img.Picture Is Nothing, "a missing picture file is skipped quietly"
fso.DeleteFile path

Set svc = Nothing
Set probe = Nothing
Finish
