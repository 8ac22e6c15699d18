<!-- #include file="connect.inc" --><%
' The content of a fast grid, with short tags unless "plain" is set.
Dim query
Set query = Request.QueryString
Session("f_Sort") = query("sort")
If query("plain") <> "" Then
    db.CreateFastGrid "f", query("sql"), "shop"
Else
    db.CreateFastGrid "f", query("sql"), "shop", CInt("0" & query("rows")), 5, "<t>", "(", ")", "[", "]"
End If
If query("twice") <> "" Then db.CreateFastGrid "f", query("sql"), "shop"
Response.Write Replace(db.Grid("f"), vbCrLf, "/")
%>
