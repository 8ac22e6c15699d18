<%
' Shows a file of the demo in a box that can be opened. The page calls it, so that a visitor may name no file.
Sub ShowSource(file)
    Response.Write "<details class=""source""><summary>Source of <code>" & file & "</code></summary><pre><code>"
    Response.Write Server.HTMLEncode(db.ReadTemplate(Server.MapPath(file), False))
    Response.Write "</code></pre></details>" & vbCrLf
End Sub
%>
