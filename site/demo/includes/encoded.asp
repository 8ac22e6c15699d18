<%
' Rows show values as they are, as HTML. Text that visitors can edit is encoded by the query, for grids that edit it
' in a second column.

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
