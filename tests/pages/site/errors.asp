<!-- #include file="connect.inc" --><%
db.CreateSource "items", "select id from items", "shop"
Select Case Request("case")
Case "connection": db.CreateSource "x", "select 1", "nowhere"
Case "source": db.CreateGrid "g", "nowhere"
Case "second connection": db.CreateConnection "shop", ""
Case "second source": db.CreateSource "items", "select 1 as one", "shop"
Case "second column": db.CreateSource "x", "select 1 as one, 2 as one", "shop"
Case "sql": db.CreateSource "x", "selec 1", "shop"
Case "no string": db.CreateConnection "later": db.CreateSource "x", "select 1", "later"
Case "no access": Dim built: built = "": db.CreateConnection "mdb", built, Server.MapPath("none.mdb")
Case "bad connection": db.ADOErrors = True: db.CreateConnection "bad", "Provider=SQLite;Data Source=" & Server.MapPath("none.db")
Case "template": db.CreateGrid "g", "items", Server.MapPath("templates/none.htm")
Case "read template": Response.Write db.ReadTemplate(Server.MapPath("none.htm"))
Case "clean up": db.Source("items").RecordSet.Close: db.CleanUp
Case "nothing": Set db.Source("items").RecordSet = Nothing: db.CreateGrid "g", "items"
Case "tags": db.HeaderFooterTags.Add "one": db.CreateGrid "g", "items"
Case "arguments": db.CreateGrid "g"
Case "two": db.CreateSource "x", "delete from items; select 1 as one", "shop"
Case "extremes": db.BarGraph = True: db.CreateSource "x", "select id as ""id]) from items; delete from items; --"" from items", "shop"
Case "many": db.CreateConnection "many", "Provider=SQLite;Statements=Many;Data Source=" & Server.MapPath("/shop.db")
    db.CreateSource "x", "update items set note = 'many' where id = 1; select note from items where id = 1", "many": Response.Write db.Source("x").RecordSet("note") & " "
End Select
Response.Write "went on"
%>
