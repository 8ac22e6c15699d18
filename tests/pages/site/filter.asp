<!-- #include file="connect.inc" --><%
' A filter form and what the source holds by it.
Dim query
Set query = Request.QueryString
db.FilterColumns = query("columns")
db.CreateSource "s", "select id, name, age, born, member, name || 's' as ""the name"" from people", "shop"
With db.Source("s")
    .Fields("name").ViewFilter = "TEXT;20"
    .Fields("age").ViewFilter = "SELECT;NORMAL;;8,30"
    .Fields("born").ViewFilter = "DATE"
    .Fields("the name").ViewFilter = "TEXT"
End With
db.ShowSortIcons = False
db.ShowFilterIcons = False
db.CreateGrid "g", "s", Server.MapPath("templates/ids.htm")
db.CreateFilter "s", Server.MapPath("templates/" & query("form") & ".htm"), (query("hidden") = "")
If query("form") <> "" And query("quiet") = "" Then Response.Write db.FilterForm("s")
Response.Write Rows(db.Grid("g")) & " " & Session("s_filterstr")
%>
