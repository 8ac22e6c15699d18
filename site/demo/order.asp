<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Dim page_title, opened
page_title = "Order desk"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">The form is a second grid, fed by the list: it shows the order that was opened there, and goes through all of them by itself. What is
saved in it shows in the list at once. The lines are a third grid, with pages and a sort order of their own.</p>
<%
' The customer's name is worked out, by || '', so that a record counts as one of orders alone, and its key as the whole key.
db.CreateSource "sales", _
    "select id, ordered, (select name || '' from customers where id = customer_id) as customer, status, paid, shipped, freight, total, note, " & _
    "(select " & EncodedText("name") & " from customers where id = customer_id) as customer_shown" & Encoded("status,note") & _
    " from orders order by id desc", "shop"

ShowEncoded "sales", "customer,status,note"
With db.Source("sales")
    .Fields("id").Caption = "Order"
    .Fields("ordered").Caption = "Ordered"
    .Fields("customer").Caption = "Customer"
    .Fields("status").Caption = "Status"
    .Fields("paid").Caption = "Paid"
    .Fields("total").Caption = "Total"
    .Fields("ordered").Format = "d mmm yyyy"
    .Fields("shipped").Format = "d mmm yyyy"
    .Fields("shipped").DateCaption = "Choose"
    .Fields("paid").Format = "Yes/No"
    .Fields("freight").Format = "0.00"
    .Fields("total").Format = "#,##0.00"
End With

db.CreateGrid "sales", "sales", Server.MapPath("templates/order_list.htm"), "", "", 6, 3
db.CreateGrid "sale", "sales", Server.MapPath("templates/order_form.htm"), "", "", 1, 1, True, True

' The form's order, or 0 while the form is closed; another order's lines begin at their first page.
opened = 0
With db.Source("sales").RecordSet
    If db.Grid("sale") <> "" And .RecordCount > 0 Then
        .AbsolutePosition = Session("sale_Offset") + 1
        opened = .Fields("id").Value
    End If
End With
If opened <> Session("desk_order") Then Session("sale_lines_CurrentPage") = 1
Session("desk_order") = opened
%>
<div class="tabrixdb">
<%= db.Grid("sales") %>
</div>
<% If opened <> 0 Then %>
<div class="tabrixdb form">
<%= db.Grid("sale") %>
</div>
<%
    db.ShowFilterIcons = False
    db.CreateSource "sale_lines", _
        "select line, products.name as product, quantity, unit_price, quantity * unit_price * (1 - discount) as amount, " & _
        EncodedText("products.name") & " as product_shown " & _
        "from order_lines join products on products.id = product_id where order_id = " & opened & " order by line", "shop"
    ShowEncoded "sale_lines", "product"
    With db.Source("sale_lines")
        .Fields("line").Caption = "Line"
        .Fields("product").Caption = "Product"
        .Fields("quantity").Caption = "Quantity"
        .Fields("unit_price").Caption = "Price"
        .Fields("amount").Caption = "Amount"
        .Fields("unit_price").Format = "0.00"
        .Fields("amount").Format = "#,##0.00"
    End With
    db.CreateGrid "sale_lines", "sale_lines", Server.MapPath("templates/order_lines.htm"), "", "", 3, 1
%>
<h2>Lines of order <%= opened %></h2>
<div class="tabrixdb">
<%= db.Grid("sale_lines") %>
</div>
<script>document.querySelector('[data-order="<%= opened %>"]')?.setAttribute('aria-current', 'true');</script>
<%
End If
ShowSource "order.asp"
ShowSource "templates/order_list.htm"
ShowSource "templates/order_form.htm"
ShowSource "templates/order_lines.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
