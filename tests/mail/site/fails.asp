<%
' A page whose administrator is told of its error.
Dim db
Set db = Server.CreateObject("TabrixDb.Pro")
db.AdminEmail = Request("admin")
db.CreateGrid "orders <1>", "nowhere"
%>
