<!-- #include file="connect.inc" --><%
Dim shown : shown = Server.MapPath("templates/list.htm")
db.SingleGridTemplate = True
db.DebugMode = (Request("debug") <> "")
db.CreateSource "items", "select id, name from items", "shop"
db.CreateGrid "g", "items", shown, Server.MapPath("templates/form.htm"), Server.MapPath("templates/pointers.htm"), 1
Response.Write Mid(shown, InStrRev(shown, "/") + 1) & " " & db.GridEditMode & " " & Session("g_mode")
%>
