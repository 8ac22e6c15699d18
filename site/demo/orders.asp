<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Dim page_title, field
page_title = "Orders"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">A grid with a template of its own: one HTML file holds the captions, a row, a second row for the stripes,
and the bar below. Sort and filter with the icons in the captions.</p>
<%
' The customer's name and country are worked out, by || '', so that a record counts as one of orders alone, and its key as the whole key.
db.CreateSource "orders", _
    "select orders.id, ordered, customers.name || '' as customer, country || '' as country, status, paid, total, " & _
    EncodedText("customers.name") & " as customer_shown" & Encoded("country,status") & _
    " from orders join customers on customers.id = customer_id order by orders.id desc", "shop"

ShowEncoded "orders", "customer,country,status"
With db.Source("orders")
    For Each field In Array("id", "ordered", "customer", "country", "status", "paid", "total")
        .Fields(field).Caption = UCase(Left(field, 1)) & Mid(field, 2)
    Next
    .Fields("id").Caption = "Order"
    .Fields("ordered").Format = "dd mmm yyyy"
    .Fields("total").Format = "#,##0.00"
End With

db.CreateGrid "orders", "orders", Server.MapPath("templates/orders.htm"), "", "", 12, 6
%>
<div class="tabrixdb">
<%= db.Grid("orders") %>
</div>
<%
ShowSource "orders.asp"
ShowSource "templates/orders.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
