<%@ Language="VBScript" %>
<% Response.Redirect "/demo/" %>
