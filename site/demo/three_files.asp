<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Const kTexts = "name,company,email,city,country"
Dim page_title
page_title = "Three files"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">Customers, in a grid from three files: one for the head, one for a row, one for the bar below.
Each is a table that a browser shows by itself; the engine joins them into one.</p>
<%
db.CreateSource "customers", "select id, " & kTexts & ", since" & Encoded(kTexts) & " from customers order by id", "shop"
ShowEncoded "customers", kTexts
With db.Source("customers")
    .Fields("name").Caption = "Name"
    .Fields("company").Caption = "Company"
    .Fields("city").Caption = "City"
    .Fields("country").Caption = "Country"
    .Fields("since").Caption = "Since"
    .Fields("since").Format = "yyyy"
End With
db.CreateGrid "customers", "customers", Server.MapPath("templates/customers_row.htm"), _
    Server.MapPath("templates/customers_header.htm"), Server.MapPath("templates/customers_footer.htm"), 10, 5
%>
<div class="tabrixdb">
<%= db.Grid("customers") %>
</div>
<%
ShowSource "three_files.asp"
ShowSource "templates/customers_header.htm"
ShowSource "templates/customers_row.htm"
ShowSource "templates/customers_footer.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
