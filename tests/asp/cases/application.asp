<%@ Language="VBScript" EnableSessionState=False %><% Option Explicit
Dim a(1), b
Application.Lock
Application.Lock
Application("hits") = Application("hits") + 1
Application.UnLock
Application("Hits") = Application("HITS") + 1
Application.UnLock
a(0) = 1
Application("list") = a
b = Application("list")
b(0) = 2
Response.Write Application("hits") & Application.Contents.Count & Application("list")(0) & Application.Value("none") & "|"
On Error Resume Next
Set Application("object") = Server.CreateObject("ADODB.Connection")
Response.Write Err.Source & "|"
Err.Clear
Application("object") = Array(Request)
Response.Write Err.Source & "|"
Err.Clear
Session("x") = 1
Response.Write Err.Source
Application.Lock
%>
