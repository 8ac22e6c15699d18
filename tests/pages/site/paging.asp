<!-- #include file="connect.inc" --><%
If Request("set") <> "" Then Session(Request("set")) = Request("to")
db.FilterColumns = "name"
db.CreateSource "items", "select id, name from items", "shop"
db.CreateGrid "g", "items", Server.MapPath("templates/list.htm"), "", "", 5, 3
Response.Write Rows(db.Grid("g"))
ShowState "g"
db.CleanUp
%>
