<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Const kTexts = "name,role,email,about"
Dim page_title
page_title = "Staff"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">One grid with three templates: the list, a form in which all people of the page are edited, and a form for a new person. The engine
takes the one that belongs to what the visitor does.</p>
<%
db.SingleGridTemplate = True
db.ShowFilterIcons = False
db.CreateSource "staff", "select id, name, role, email, started, hours, wage, working, about" & Encoded(kTexts) & " from staff order by name", "shop"

ShowEncoded "staff", kTexts
With db.Source("staff")
    .Fields("name").Caption = "Name"
    .Fields("role").Caption = "Role"
    .Fields("email").Caption = "E-mail"
    .Fields("started").Caption = "Started"
    .Fields("hours").Caption = "Hours"
    .Fields("wage").Caption = "Wage"
    .Fields("working").Caption = "At work"
    .Fields("started").Format = "mmmm yyyy"
    .Fields("started").DateCaption = "Choose"
    .Fields("started").Required = True
    .Fields("wage").Format = "#,##0.00"
    .Fields("working").Format = "Yes/No"
End With

db.CreateGrid "staff", "staff", Server.MapPath("templates/staff.htm"), _
    Server.MapPath("templates/staff_edit.htm"), Server.MapPath("templates/staff_add.htm"), 6, 3
%>
<div class="tabrixdb">
<%= db.Grid("staff") %>
</div>
<%
ShowSource "staff.asp"
ShowSource "templates/staff.htm"
ShowSource "templates/staff_edit.htm"
ShowSource "templates/staff_add.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
