<!-- #include file="connect.inc" --><%
' Templates and contents of 200,000 characters.
Dim pad, text, template, file, html
pad = String(200000, "x")
db.CreateSource "s", "select 1 as a, 2 as b", "shop"
Select Case Request("case")
Case "row": text = "<!--tabrixdb:content_start-->[" & pad & "#~b~#]<!--tabrixdb:content_end-->"
Case "plain": text = "[" & pad & "#~b~#]"
Case "header": text = "<table>" & pad & "<!--tabrixdb:content_start-->[#~b~#]<!--tabrixdb:content_end--></table>"
Case "view": text = "<table>" & pad & "#~b[tx;]~#</table>"
Case "button": text = "[#~b~#" & pad & "<a href=""#~btn_update_row~#"">Save</a>]"
Case "late button": text = "[#~b~#" & pad & "<a href=""#~btn_delete_row~#"">Delete</a>]"
Case "content": text = "[#~b~#]": db.Source("s").Fields("b").Content = pad & "#~a~#"
Case "eval": text = "[#~b~#]": db.Source("s").Fields("b").Content = pad & "#~eval:1:eval~#"
Case "nested": text = "[#~b~#]": db.Source("s").Fields("b").Content = pad & "#~grid_x~#"
Case "lookup": text = "[#~b~#]"
    db.GridEditMode = "GRID"
    db.Source("s").Fields("b").ViewEdit = "SELECT;LOOKUP;1;with recursive n(i) as (select 1 union all select i + 1 from n where i < 100000) select i from n"
End Select
template = Server.MapPath("templates/of_the_request.htm")
Set file = Server.CreateObject("Scripting.FileSystemObject").CreateTextFile(template, True)
file.Write text
file.Close
db.CreateGrid "g", "s", template
html = Replace(db.Grid("g"), pad, "...")
Response.Write Mid(html, InStr(html, "["), 120) & " of " & Len(db.Grid("g")) \ 1000
%>
