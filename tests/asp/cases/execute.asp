<%@ Language="VBScript" %><% x = 1
Response.Write "a"
Server.Execute "INC/part.asp"
Response.Write x & Session("part")
On Error Resume Next
Server.Execute "/inc/fails.asp"
Response.Write "|" & Err.Number & Err.Description
Err.Clear
Server.Execute "none.asp"
Response.Write "|" & Err.Source
Err.Clear
Server.Execute "execute_self.asp"
Response.Write "|" & Err.Source & "|"
On Error GoTo 0
Server.Transfer "inc/ends.asp" %>never
