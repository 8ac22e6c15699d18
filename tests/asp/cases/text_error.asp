<% Response.ContentType = "text/csv"
Response.AddHeader "Content-Disposition", "attachment"
Response.Write "a;b"
Err.Raise 13 %>
