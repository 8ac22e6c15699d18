<!-- #include file="connect.inc" --><%
' The engine's script control with a page's own functions and objects, in the rows of a grid.
Dim seen
Set seen = Server.CreateObject("Scripting.Dictionary")
db.CreateSource "items", "select id, name, ""Unit Price"" from items where id <= 3", "shop"
db.Script.AddCode "Const kRate = 2" & vbCrLf & "Function Gross(net)" & vbCrLf & "  Gross = FormatNumber(net * kRate, 2)" & vbCrLf & _
    "End Function" & vbCrLf & "Function Link(id)" & vbCrLf & "  Link = ""<a href='#~btn_delete_row~#'>"" & id" & vbCrLf & "End Function" & vbCrLf & "Sub Forever : Do : Loop : End Sub"
db.Script.AddObject "seen", seen
db.Script.AddObject "db", db
If Request("timeout") <> "" Then db.Script.Timeout = Request("timeout")
db.Source("items").Fields("id").Content = Request("content")
db.CreateGrid "g", "items", Server.MapPath("templates/content.htm")
Response.Write Rows(db.Grid("g")) & seen.Count & db.Script.Error.Number
%>
