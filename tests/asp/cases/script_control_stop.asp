<% Server.ScriptTimeout = 1 : Response.Write "before "
On Error Resume Next
Set sc = CreateObject("ScriptControl")
sc.Timeout = -1
sc.ExecuteStatement "Do : Loop"
Response.Write "not reached" %>
