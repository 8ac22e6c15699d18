<% Response.Buffer = False
Response.AddHeader "X-First", "1"
Response.Write "a"
On Error Resume Next
Response.Clear
Response.Write "|" & Err.Source
Err.Clear
Response.ContentType = "text/plain"
Response.Write "|" & Err.Source
Err.Clear
Response.AddHeader "X", "1" & vbCrLf & "Y: 2"
Response.Write "|" & (Err.Number <> 0) & Response.IsClientConnected %>
