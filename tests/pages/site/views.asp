<!-- #include file="connect.inc" --><%
' One column in its control: `view` its specification, `v` its value, `items` another column of the record.
db.GridEditMode = "GRID"
db.CreateSource "s", "select '" & Replace(Request("v"), "'", "''") & "' as ""the v"", 'a,b~Bee,c ~ C&C' as items, id from items where id < " & Request("rows") + 2, "shop"
With db.Source("s").Fields("the v")
    If Request("view") <> "" Then .ViewEdit = Request("view")
    .Format = Request("format")
    .Content = Request("content")
End With
db.CreateGrid "g", "s", Server.MapPath("templates/views.htm")
Response.Write Rows(db.Grid("g"))
If Request("show") = "script" Then Response.Write Mid(db.Grid("g"), InStr(db.Grid("g"), "<script language=javascript>"))
%>
