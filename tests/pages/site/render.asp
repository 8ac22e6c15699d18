<!-- #include file="connect.inc" --><%
db.ShowFilterIcons = False
db.CreateSource "s", Request("sql"), "shop"
db.CreateGrid "g", "s", "", "", "", 2
Response.Write db.Grid("g")
%>
