<!-- #include file="connect.inc" --><%
db.CreateSource "items", "select id from items", "shop"
db.CreateGrid "items", "items", Server.MapPath("templates/list.htm")
Response.Write Rows(db.Grid("items"))
%>
