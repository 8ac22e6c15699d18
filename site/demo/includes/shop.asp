<%
' What every page of the shop needs: the engine, and its connection to the shop's database.
Dim db
Set db = Server.CreateObject("TabrixDb.Pro")
db.CreateConnection "shop", "Provider=SQLite;Data Source=" & Server.MapPath("/demo/data/shop.db")
%>
