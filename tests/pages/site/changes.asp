<!-- #include file="connect.inc" --><%
' Members to change. `user` logs the visitor in; `end` is how a transaction of the page's own ends.
Dim query, name
Set query = Request.QueryString
If query("user") <> "" Then Session("user") = query("user")
db.Permit = "edit, add, delete"
If query("mode") <> "" Then db.GridEditMode = query("mode")
If query("end") <> "" Then db.Connection("shop").BeginTrans
db.CreateSource "s", "select id, name, pass_word, note, photo from members", "shop"
For Each name In Array("name", "pass_word", "note")
    db.Source("s").Fields(name).ViewEdit = "TEXT"
    db.Source("s").Fields(name).ViewADD = "TEXT"
Next
db.Source("s").Fields("photo").ViewEdit = "UPLOADDB"
db.CreateGrid "g", "s", Server.MapPath("templates/members.htm")
If query("end") = "commit" Then db.Connection("shop").CommitTrans
If query("end") = "rollback" Then db.Connection("shop").RollbackTrans
Response.Write Rows(db.Grid("g")) & Mid(db.Grid("g"), InStr(db.Grid("g"), "</table>"))
%>
