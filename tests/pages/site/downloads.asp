<!-- #include file="connect.inc" --><%
' A grid with a download, and the file that its button leads to.
db.CreateSource "s", Request("sql"), "shop"
db.Download = True
db.DownloadFormat = Request("format")
Session("g_PageSize") = 2
Session("g_CurrentPage") = Request("page")
Session("g_filter") = Request("filter") <> ""
Session("g_filterstr") = Request("filter")
db.CreateGrid "g", "s", Server.MapPath("templates/download.htm"), "", "", 2
Dim html, address
html = Rows(db.Grid("g"))
address = Split(Split(html, "<i>")(1), "</i>")(0)
Dim text
text = Server.CreateObject("Scripting.FileSystemObject").OpenTextFile(Server.MapPath(address)).ReadAll
If Request("show") = "ends" Then text = Left(text, 12) & ".." & Len(text) - Len(Replace(text, vbCrLf, "-")) + 1 & " lines.." & Right(text, 9)
Response.Write html & " " & db.Download & " " & Replace(text, vbCrLf, "\")
%>
