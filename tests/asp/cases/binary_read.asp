<% n = 3
b = Request.BinaryRead(n)
Response.Write n & VarType(b) & LenB(b) & "|"
n = 100
Response.BinaryWrite Request.BinaryRead(n)
Response.Write "|" & n
On Error Resume Next
x = Request.Form("a")
Response.Write "|" & Err.Source
Err.Clear
x = Request("a")
Response.Write "|" & Err.Source %>
