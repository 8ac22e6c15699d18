<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Const kTexts = "name,company,email,phone,city,country"
Dim page_title
page_title = "Customers"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">Rows are edited where they stand, one at a time; a new one stands before them. What is missing is said before anything is sent,
and what the database refuses is said above the rows, with all that was typed still there: try an e-mail address that somebody else has.</p>
<%
db.CreateSource "clients", "select id, " & kTexts & ", since, newsletter, credit_limit" & Encoded(kTexts) & _
    " from customers order by id", "shop"

ShowEncoded "clients", kTexts
With db.Source("clients")
    .Fields("name").Caption = "Name"
    .Fields("email").Caption = "E-mail"
    .Fields("city").Caption = "City"
    .Fields("since").Caption = "Since"
    .Fields("newsletter").Caption = "News"
    .Fields("credit_limit").Caption = "Credit"
    .Fields("since").Format = "d mmm yyyy"
    .Fields("since").DateCaption = "Choose"
    .Fields("since").Required = True
    .Fields("since").Default_Value = Date
    .Fields("newsletter").Format = "Yes/No"
    .Fields("credit_limit").Format = "#,##0.00"
End With

db.CreateGrid "clients", "clients", Server.MapPath("templates/customers.htm"), "", "", 8, 4
%>
<div class="tabrixdb">
<%= db.Grid("clients") %>
</div>
<%
ShowSource "customers.asp"
ShowSource "templates/customers.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
