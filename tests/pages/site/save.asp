<!-- #include file="connect.inc" --><%
' Whole pages of any query to edit: `views` the controls as "column=view|...", `content` that of the first column,
' `before` a statement on the connection, `lock` the source's lock type.
Dim query, pair, html
Set query = Request.QueryString
If query("mode") <> "row" Then db.GridEditMode = "GRID"
db.ShowSortIcons = False
db.ShowFilterIcons = False
If query("before") <> "" Then db.Connection("shop").Execute query("before")
If query("transaction") <> "" Then db.Connection("shop").BeginTrans
db.Permit = query("permit")
If query("lock") = "" Then
    db.CreateSource "s", query("sql"), "shop"
Else
    db.CreateSource "s", query("sql"), "shop", 3, query("lock")
End If
If query("writable") <> "" Then db.Source("s").Fields(query("writable")).Updatable = True
For Each pair In Split(query("views"), "|")
    db.Source("s").Fields(Split(pair, "=")(0)).ViewEdit = Split(pair, "=")(1)
Next
If query("content") <> "" Then db.Source("s").Fields(1).Content = query("content")
db.CreateGrid "g", "s", Server.MapPath("templates/" & query("t") & ".htm")
html = db.Grid("g")
If InStr(html, "tabrixdb-message") > 0 Then Response.Write "! " & Split(Split(html, "role=""alert"">")(1), "</div>")(0) & " "
Response.Write Rows(html) & Mid(html, InStr(html, "</table>"))
%>
