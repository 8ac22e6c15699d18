<!-- #include file="connect.inc" --><%
' What the Content of `id` makes of the graph tags of `the v`.
db.BarGraph = Request("off") = ""
db.CreateSource "s", "select id, ""the v"", note from profits" & Request("where"), "shop"
Dim fields
Set fields = db.Source("s").Fields
If Request("max") <> "" Then
    fields("the v").Min = Request("min")
    fields("the v").Max = Request("max")
End If
fields("the v").Format = Request("format")
fields("the v").Caption = Request("caption")
fields("id").Content = Request("content")
db.CreateGrid "g", "s", Server.MapPath("templates/content.htm")
Response.Write Rows(db.Grid("g"))
%>
