<%
' Rows show values as they are, as HTML: a script in a value runs in the browser of everyone who sees the row. So the
' query encodes every text, for grids that edit, sort or filter by it in a second column.

' For the query: a column as text of a page.
Function EncodedText(column)
    EncodedText = "replace(replace(replace(" & column & ", '&', '&amp;'), '<', '&lt;'), '""', '&quot;')"
End Function

' For the query: each of these columns encoded, as column_shown.
Function Encoded(columns)
    Dim column
    For Each column In Split(columns, ",")
        Encoded = Encoded & ", " & EncodedText(column) & " as " & column & "_shown"
    Next
End Function

' Shows the encoded values in the place of the columns themselves.
Sub ShowEncoded(source, columns)
    Dim column
    For Each column In Split(columns, ",")
        db.Source(source).Fields(column).Content = "#~" & column & "_shown~#"
    Next
End Sub
%>
