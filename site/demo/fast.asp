<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Dim page_title
page_title = "Best customers"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">A fast grid takes a query's first rows and puts them between the tags that the page gives it: no template, no pages, no buttons.
For lists that are only read, such as these twelve.</p>
<%
db.CreateFastGrid "best", _
    "select " & EncodedText("customers.name") & " as Customer, " & EncodedText("customers.city") & " as City, count(*) as Orders, printf('%.2f', sum(total)) as Spent, " & _
    "max(date(shipped)) as ""Last parcel"" from customers join orders on customers.id = customer_id " & _
    "group by customers.id order by sum(total) desc, customers.id", "shop", 12, 0, _
    "<table class=""fast"">", "<td>", "</td>", "<th>", "</th>"
%>
<div class="tabrixdb">
<%= db.Grid("best") %>
</div>
<%
ShowSource "fast.asp"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
