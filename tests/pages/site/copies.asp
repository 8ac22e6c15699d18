<!-- #include file="connect.inc" --><%
' Bytes from a field to a file and back to another record's field.
Dim rs, size, path, i
path = Server.MapPath("copy.bin")
db.CreateSource "s", "select id, ""the file"" from files order by id", "shop"
Set rs = db.Source("s").RecordSet

Function Stored(id)
    db.CreateSource "made" & id & Timer & Rnd, "select length(""the file"") as n, substr(hex(""the file""), -6) as e, ""the file"" is null as none, typeof(""the file"") as t from files where id = " & id, "shop"
    With db.Source(db.Source.Count).RecordSet
        Stored = .Fields("n") & " " & .Fields("e") & " " & .Fields("t")
    End With
End Function

Select Case Request("case")
Case "sizes"
    ' Made by the page as a file of ASCII, which takes a byte a character.
    Dim text
    For Each size In Array(0, 1, 65535, 65536, 65537, 20000000)
        Set text = Server.CreateObject("Scripting.FileSystemObject").CreateTextFile(path)
        If size > 0 Then text.Write String(size - 1, "a") & "Z"
        text.Close
        rs.MoveFirst
        db.CopyFileToField rs, "THE FILE", path
        Response.Write size & ": " & Stored(1)
        Response.Write " " & (db.CopyFieldToFile(rs, "the file", Server.MapPath("again.bin")) = Server.MapPath("again.bin"))
        rs.MoveNext
        If size > 0 Then db.CopyFileToField rs, "the file", Server.MapPath("again.bin"): Response.Write " " & Stored(2)
        Response.Write vbLf
    Next
Case "pending"
    Dim file: Set file = Server.CreateObject("Scripting.FileSystemObject").CreateTextFile(path)
    file.Write "new"
    file.Close
    db.CopyFileToField rs, "the file", path, False
    Response.Write rs.EditMode & " " & Stored(1)
    rs.Update
    Response.Write " " & rs.EditMode & " " & Stored(1)
    db.CopyFileToField rs, "the file", ""
    Response.Write " " & Stored(1)
Case "empty field"
    rs.AbsolutePosition = 3
    Response.Write (db.CopyFieldToFile(rs, "the file", path) = path) & " " & Server.CreateObject("Scripting.FileSystemObject").FileExists(path)
Case "no file": db.CopyFileToField rs, "the file", path
Case "no field": db.CopyFileToField rs, "nothing", path
Case "no folder": db.CopyFieldToFile rs, "the file", Server.MapPath("/nowhere/x.bin")
Case "no recordset": db.CopyFieldToFile Nothing, "the file", path
Case "strings"
    Dim bytes, all
    bytes = db.getByteString("aé€" & ChrW(&H4e2d))
    For i = 1 To LenB(bytes): Response.Write AscB(MidB(bytes, i, 1)) & " ": Next
    For i = 0 To 255: all = all & ChrB(i): Next
    text = db.getString(all)
    Response.Write Len(text) & " " & Mid(text, 129, 1) & " " & (db.getByteString(text) = all)
    rs.AbsolutePosition = 4
    Response.Write " [" & db.getString(rs("the file").Value) & "] [" & db.getString("") & "] [" & db.getString(Null) & "] " & LenB(db.getByteString(Empty))
End Select
%>
