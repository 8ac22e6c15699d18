<!-- #include file="connect.inc" --><%
' Random contents over records full of tags and pieces of tags, beside a model: one replacement after another. Values are text,
' which the model puts in at the end, for words that no tag can hold; or with `trust` they may hold tags themselves.
db.TrustValues = (Request("trust") <> "")
Rnd -1
Randomize 20260305

Function Some(pieces, most)
    Dim i, text
    For i = 1 To Int(Rnd * (most + 1))
        text = text & pieces(Int(Rnd * (UBound(pieces) + 1)))
    Next
    Some = text
End Function

' The last column is the one that has the content, so that the row itself replaces nothing in it.
Dim names, values, sql, row, column
names = Array("a", "a_b", "Größe", "Unit Price", "z")
values = Array("x", "12", " ", "&", "é", "#~", "~#", "$~", "~$", "#~a_b~#", "$~Größe~$", "a", "_b", "#")
For row = 1 To 12
    sql = sql & " union all select " & row
    For column = 0 To 4
        If Rnd < 0.3 Then
            sql = sql & ", 'plain " & row & "'"
        Else
            sql = sql & ", '" & Some(values, 4) & "'"
        End If
    Next
Next
db.CreateSource "s", "select column2 as a, column3 as a_b, column4 as ""Größe"", column5 as ""Unit Price"", column6 as z from (select 0 as column1, 0 as column2, 0 as column3, 0 as column4, 0 as column5, 0 as column6" & sql & ") where column1 > 0", "shop"

Function Held(i)
    Held = db.Source("s").RecordSet(names(i)).Value
End Function

Function Model(content)
    Dim i, plain, encoded
    Model = content
    For i = 0 To 4
        plain = "QZ" & i & "QZ"
        encoded = "QX" & i & "QX"
        If db.TrustValues Then
            plain = Held(i)
            encoded = Server.URLEncode(plain)
        End If
        If InStr(1, Model, "#~" & names(i) & "~#", 1) > 0 Then
            Model = Replace(Model, "#~" & names(i) & "~#", plain, 1, -1, 1)
            Model = Replace(Model, "$~" & names(i) & "~$", encoded, 1, -1, 1)
        End If
    Next
    For i = 0 To 4
        Model = Replace(Replace(Model, "QZ" & i & "QZ", Held(i)), "QX" & i & "QX", Server.URLEncode(Held(i)))
    Next
    If Trim(Model) = "" Then Model = "&nbsp;"
    Model = "[" & Model & "]"
End Function

Dim pieces, n, content, expected, differences, rs
pieces = Array("#~a~#", "#~A_B~#", "#~größe~#", "$~GRÖßE~$", "#~unit price~#", "$~Unit Price~$", "#~z~#", "$~a~$", "#~", "~#", "$~", "text", "<b>", "a", "_b~#", "é")
Set rs = db.Source("s").RecordSet
For n = 1 To 150
    content = Some(pieces, 8)
    db.Source("s").Fields("z").Content = content
    If content <> "" Then
        db.CreateGrid "g" & n, "s", Server.MapPath("templates/random_content.htm"), "", "", 12
        expected = ""
        rs.MoveFirst
        Do Until rs.EOF
            expected = expected & Model(content)
            rs.MoveNext
        Loop
        If Rows(db.Grid("g" & n)) <> expected Then
            differences = differences + 1
            If differences < 4 Then Response.Write content & vbLf & Rows(db.Grid("g" & n)) & vbLf & expected & vbLf
        End If
    End If
Next
Response.Write (differences + 0) & " differences"
%>
