<%@ Language="VBScript" %><script runat="server" language="vbscript" src="inc/code.inc"></script><%
Option Explicit
Dim i
Sub Row(n) %><td><%= n %></td><% End Sub
For i = 1 To 2 %>
<tr><% Row i %></tr>
<% Next
If i = 3 Then %>three<% Else %>other<% End If
Later
%><script>var a = "<%= i %>";</script>
<!-- #include file="inc/shown.inc" --><% Response.Write shown %>
