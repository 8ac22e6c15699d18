<!-- #include file="connect.inc" --><%
' Pages of three people to edit, and with "fed" the selected one as a form below. Controls are "<name=value>".
Const kControl = "<#~field_name~#=#~field_value~#>"
Dim query, name
Set query = Request.QueryString
If query("mode") <> "" Then db.GridEditMode = query("mode")
db.SingleGridTemplate = (query("single") <> "")
db.Permit = "edit, add, delete"  ' whatever the templates offer
db.ShowSortIcons = False
db.ShowFilterIcons = False
db.CreateSource "s", "select id, name, age, born, member, photo from people", "shop"
With db.Source("s")
    For Each name In Array("name", "age", "born")
        .Fields(name).ViewEdit = kControl
        .Fields(name).ViewADD = kControl
    Next
    .Fields("age").Default_Value = "18"
    .Fields("member").ViewEdit = "CHECKBOX;1"
    If query("boxes") <> "" Then
        .Fields("member").ViewEdit = "CHECKBOX;True"
        .Fields("name").ViewEdit = "NORMAL"
    End If
    .Fields("photo").ViewEdit = "UPLOADDB"
End With

' Links as their text in braces, without markers of templates.
Function Compact(html)
    Dim start, text
    text = html
    Do While InStr(text, "<a href=") > 0
        start = InStr(text, "<a href=")
        text = Left(text, start - 1) & "{" & Mid(text, InStr(start, text, ">") + 1)
        text = Replace(text, "</a>", "}", 1, 1)
    Loop
    For Each start In Array("header_start", "header_end", "footer_start")
        text = Replace(text, "<!--tabrixdb:" & start & "-->", "")
    Next
    Compact = Replace(text, "&nbsp;", "")
End Function

' What a grid shows: its message, its inside, its validation.
Sub Show(grid)
    Dim html, at
    html = db.Grid(grid)
    at = InStr(html, "<div class=""tabrixdb-message""")
    If at > 0 Then Response.Write Mid(html, InStr(at, html, ">") + 1, InStr(at, html, "</div>") - InStr(at, html, ">") - 1) & " "
    Response.Write Compact(Rows(html))
    at = InStr(html, "name=""" & grid & "_shown""")
    If at > 0 Then Response.Write vbCrLf & "<" & Mid(html, at, InStr(at, html, ">") - at + 1)
    If query("script") <> "" Then Response.Write Mid(html, InStr(html, "_validate() {"))
End Sub

If query("boxes") <> "" Then
    db.CreateGrid "g", "s", Server.MapPath("templates/people_boxes.htm"), , , 3
ElseIf query("single") <> "" Then
    db.CreateGrid "g", "s", Server.MapPath("templates/people.htm"), Server.MapPath("templates/people_edit.htm"), Server.MapPath("templates/people_add.htm"), 3
Else
    db.CreateGrid "g", "s", Server.MapPath("templates/people.htm"), , , 3
End If
If query("fed") <> "" Then db.CreateGrid "f", "g", Server.MapPath("templates/people_form.htm"), , , 1, , True
Show "g"
If query("fed") <> "" Then Show "f"
%>
