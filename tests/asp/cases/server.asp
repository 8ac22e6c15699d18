<%@ Language="VBScript" %><% Option Explicit
Response.Write Server.URLEncode("a b.c_d é") & "|" & Server.HTMLEncode("<a href='x'>é & ""y""</a>") & vbCrLf
Response.Write Replace(Server.MapPath("/INC/None.mdb"), Server.MapPath("/"), "") & "|" & Replace(Server.MapPath("x\y.txt"), Server.MapPath("/"), "") & "|" & (Server.MapPath("/") = Server.MapPath(".")) & vbCrLf
Response.Write Server.ScriptTimeout
Server.ScriptTimeout = 200
Response.Write "|" & Server.ScriptTimeout & "|" & TypeName(Server.CreateObject("adodb.recordset.2.8")) & vbCrLf
On Error Resume Next
Server.CreateObject "No.Such.Thing"
Response.Write Err.Number & "|" & Err.Source & vbCrLf
Err.Clear
CreateObject "No.Such.Thing"
Response.Write Err.Number & vbCrLf
Err.Clear
Server.MapPath "../x"
Response.Write Hex(Err.Number) & "|" & Err.Source & vbCrLf
Err.Clear
Server.MapPath ""
Response.Write Err.Number & vbCrLf
Server.ScriptTimeout = 0
Response.Write Server.ScriptTimeout & "|" & Server.GetLastError.Number
%>
