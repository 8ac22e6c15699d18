<!-- #include file="connect.inc" --><%
' A grid of people by templates of the request: `row`, and with `edit` and `add` two more for a single grid; with the content
' of its name, a setting of the page, a query of its own. What it says and shows, then the form for what an address asks for.
Dim query, files, html, at
Set query = Request.QueryString
Set files = Server.CreateObject("Scripting.FileSystemObject")

Function Template(name)
    Dim file
    Template = ""
    If query(name) = "" Then Exit Function
    Template = Server.MapPath("templates/of_the_request_" & name & ".htm")
    Set file = files.CreateTextFile(Template, True)
    file.Write "<table><!--tabrixdb:content_start-->" & query(name) & "<!--tabrixdb:content_end--></table>"
    file.Close
End Function

db.ShowSortIcons = False
db.ShowFilterIcons = False
db.SingleGridTemplate = (query("edit") & query("add") <> "")
If query("mode") <> "" Then db.GridEditMode = query("mode")
If query("permit") <> "" Then db.Permit = query("permit")
If query("tag") <> "" Then db.HeaderFooterTags.Add Array("#~mine~#", query("tag"))
If query("sql") <> "" Then
    db.CreateSource "s", query("sql"), "shop"
Else
    db.CreateSource "s", "select id, name, age from people", "shop"
End If
With db.Source("s").Fields("name")
    .Content = query("content")
    .Caption = query("caption")
    If query("list") = "" Then .ViewEdit = "TEXT"
    .ViewADD = "TEXT"
End With
If query("list") <> "" Then
    If query("items") <> "" Then db.Source("s").Fields("age").ItemList = Split(query("items"), "|")
    db.Source("s").Fields("age").ViewEdit = query("list")
    If query("items") <> "" Then db.Source("s").Fields("age").ItemList = Split(query("items"), "|")
    db.Source("s").Fields("age").ViewADD = query("list")
    db.Source("s").Fields("age").OpenList = (query("open") <> "")
End If
db.CreateGrid "g", "s", Template("row"), Template("edit"), Template("add")
If query("twice") <> "" Then db.CreateGrid "g", "s", Template("row"), Template("edit"), Template("add")
html = db.Grid("g")

Function Between(start, finish)
    Dim at
    at = InStr(html, start)
    Between = ""
    If at > 0 Then Between = Mid(html, at + Len(start), InStr(at, html, finish) - at - Len(start)) & " "
End Function

Response.Write Between("<form method=""post"" action=", "</form>") & Between("<div class=""tabrixdb-message"" role=""alert"">", "</div>") & Rows(html)
%>
