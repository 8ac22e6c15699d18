<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Products</title>
<script src="/TabrixDb/tabrixdb.js"></script>
</head>
<body>
<%
Set db = Server.CreateObject("TabrixDb.Pro")
db.CreateConnection "shop", "Provider=SQLite;Data Source=" & Server.MapPath("/demo/data/shop.db")
db.CreateSource "products", "select id, replace(replace(name, '&', '&amp;'), '<', '&lt;') as name, price, stock, added from products", "shop"
db.CreateGrid "products", "products"
Response.Write db.Grid("products")
db.CleanUp
%>
</body>
</html>
