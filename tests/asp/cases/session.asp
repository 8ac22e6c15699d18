<%@ Language="VBScript" %><% Option Explicit
Dim items(1), name
Response.Write IsEmpty(Session("a")) & Session.Contents.Count & "|"
Session("a") = 1 : SESSION("A") = Session("a") + 1
Session("b") = "x"
items(0) = 5
Session("list") = items
items(0) = 6
Response.Write Session("A") & Session.Contents("a") & Session.Contents(2) & Session.Contents.Key(1) & Session("list")(0) & "|"
For Each name In Session.Contents
    Response.Write name & " "
Next
Session.Contents.Remove "b"
Response.Write "|" & Session.Contents.Count & Session.Timeout & (Session.SessionID > 0)
Session.Timeout = 5
Set Session("con") = Server.CreateObject("ADODB.Connection")
Response.Write "|" & Session.Timeout & TypeName(Session("con")) & Session.LCID & Session.StaticObjects.Count
Session("n") = Null
Response.Write IsNull(Session("n"))
Session.Contents.RemoveAll
Response.Write "|" & Session.Contents.Count
On Error Resume Next
Set Session("r") = Response
Response.Write "|" & Err.Source & "|" & IsEmpty(Session("r")) & "|"
Session.Abandon
Session("late") = 1
Response.Write Session("late")
%>
