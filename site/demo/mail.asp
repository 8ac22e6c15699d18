<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<%
Const kShop = "The shop <shop@shop.example>"  ' never an address that a visitor gives: this form is no way to write to others
Dim page_title, address, subject, message, problem, sent
page_title = "Write to the shop"
address = Trim(Request.Form("address"))
subject = Trim(Request.Form("subject"))
message = Trim(Request.Form("message"))

Function IsAddress(text)
    Dim pattern
    Set pattern = New RegExp
    pattern.Pattern = "^[A-Za-z0-9._+-]+@[A-Za-z0-9-]+(\.[A-Za-z0-9-]+)+$"
    IsAddress = pattern.Test(text)
End Function

If Request.ServerVariables("REQUEST_METHOD") = "POST" Then
    If Not IsAddress(address) Then
        problem = "Please give your e-mail address."
    ElseIf subject = "" Or message = "" Then
        problem = "Please write a subject and a message."
    Else
        db.SendEmail address, kShop, subject, message
        sent = True
    End If
End If
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">One line of script sends the mail. This site has no mail server in its settings, so the message becomes a file in the folder
<code>mail</code>, as it would go out.</p>
<% If sent Then %>
<p class="chosen" role="status">Thank you. Your message &ldquo;<%= Server.HTMLEncode(subject) %>&rdquo; is on its way.</p>
<% Else %>
<form class="form" method="post" action="mail.asp">
<% If problem <> "" Then %><p class="problem" role="alert"><%= problem %></p><% End If %>
<label>Your e-mail address <input type="email" name="address" required maxlength="80" autocomplete="email" value="<%= Server.HTMLEncode(address) %>"></label>
<label>Subject <input type="text" name="subject" required maxlength="100" value="<%= Server.HTMLEncode(subject) %>"></label>
<label>Message <textarea name="message" required rows="7" maxlength="4000"><%= Server.HTMLEncode(message) %></textarea></label>
<button type="submit">Send</button>
</form>
<%
End If
ShowSource "mail.asp"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
