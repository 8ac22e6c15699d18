<!-- #include file="connect.inc" --><%
' Shows what the Content of the column `id` becomes in the rows of `of`.
Dim sql
db.TrustValues = (Request("trust") <> "")
sql = Request("sql")
If sql = "" Then sql = "select id, name, ""Unit Price"", made, note, picture from items where id <= 2"
db.CreateSource "items", sql, "shop"
db.CreateSource "lines", "select id from items where id > #~id~# and name <> '#~name~#'", "shop", 3, 3, True
db.Source("items").Fields("id").Content = Request("content")
db.Source("items").Fields("Unit Price").Format = "0.00"
db.Source("items").Fields("made").Format = "d mmm yyyy"
If Request("nested") <> "" Then
    Dim nested
    Set nested = Server.CreateObject("TabrixDb.DbGrid")
    nested.Source = "lines"
    nested.Template = Server.MapPath("templates/nested.htm")
    nested.ROW = "2"
    db.Grid.Add nested, "lines"
    Session("lines_id_Content") = Request("inner")
End If
db.CreateGrid "g", "items", Server.MapPath("templates/content.htm")
Response.Write Rows(db.Grid("g"))
If Request("nested") <> "" Then Response.Write " | " & db.Grid.Count & " grid(s), " & db.Source("lines").Dynamic_SQL
%>
