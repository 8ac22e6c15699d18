<!-- #include file="connect.inc" --><%
Dim name, pair
For Each name In Array("UploadHandler", "ButtonsGotoAnchor", "Download", "BarGraph", "GridEditMode", "CombineGridTemplates", _
    "SortDownImage", "ShowSortIcons", "ShowFilterIcons", "SingleGridTemplate", "DebugMode", "SubmitHandler", "ADOErrors", "AdminEmail")
    Response.Write name & "=" & Eval("db." & name) & vbLf
Next
Response.Write TypeName(db.Script) & " " & (db.Calendar Is Nothing) & " " & IsEmpty(db.GotoBookMark) & vbLf
Response.Write db.HeaderFooterTags.Count & " " & db.Grid.Count & " " & db.Source.Count & " " & db.Connection.Count & " " & db.FilterForm.Count & vbLf
For Each pair In db.HeaderFooterTags
    Response.Write pair(0) & " "
Next
Response.Write vbLf & db.HeaderFooterTags(9)(1) & vbLf & db.GetTableName("select a from items where id = 1")
db.CleanUp
Response.Write vbLf & db.Connection.Count
%>
