<!-- #include file="connect.inc" --><%
' A template of the request's own, whose tags choose the controls of three columns.
Dim template, file, name
template = Server.MapPath("templates/of_the_request.htm")
Set file = Server.CreateObject("Scripting.FileSystemObject").CreateTextFile(template, True)
file.Write "<table><!--tabrixdb:content_start-->" & Request("template") & "<!--tabrixdb:content_end--></table>"
file.Close
If Request("edit") <> "" Then db.GridEditMode = "GRID"
db.CreateSource "s", "select 1 as a, 2 as a_b, 3 as ""the c""", "shop"
If Request("a") <> "" Then db.Source("s").Fields("a").ViewEdit = Request("a")
db.CreateGrid "g", "s", template
Response.Write Rows(db.Grid("g"))
For Each name In Array("a", "a_b", "the c")
    With db.Source("s").Fields(name)
        If .ViewEdit <> "NORMAL" Then Response.Write " | " & name & " E " & .EditViewType & " " & .ViewEdit
        If .ViewADD <> "NORMAL" Then Response.Write " | " & name & " A " & .AddViewType & " " & .ViewADD
    End With
Next
%>
