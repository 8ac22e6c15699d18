<!-- #include file="connect.inc" --><%
' A record whose `file` is a blob, shown by the Content of its `id`; then what the application holds of it.
db.CreateSource "s", "select id, ""the file"" from files where id in (" & Request("ids") & ") order by id", "shop"
db.Source("s").Fields("id").Content = Request("content")
db.Source("s").Fields("the file").Default_value = Request("default")
db.CreateGrid "g", "s", Server.MapPath("templates/content.htm")
Response.Write Rows(db.Grid("g"))
Dim i
For i = 1 To 2
    If Not IsEmpty(Application("the file_" & i)) Then
        Response.Write " " & i & "="
        If LenB(Application("the file_" & i)) > 0 Then Response.BinaryWrite Application("the file_" & i)
    End If
Next
%>
