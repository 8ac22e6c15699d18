<% Response.Write "kept"
Response.Flush
Response.Write "lost"
Response.Clear
On Error Resume Next
Response.AddHeader "X-Late", "1"
Response.Write "|" & Err.Source
Err.Clear
Response.Redirect "/x"
Response.Write "|" & Err.Source
Err.Clear
Response.Buffer = False
Response.Write "|" & Err.Source
Err.Clear
Response.AddHeader "Bad Name", "1"
Response.Write "|" & (Err.Number <> 0)
Err.Clear
Response.Status = "99 Odd"
Response.Write "|" & (Err.Number <> 0) %>
