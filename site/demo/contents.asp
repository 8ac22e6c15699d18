<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Dim page_title, city, chosen, lines
page_title = "Contents"
city = Request.QueryString("city")
chosen = "where shipped is not null "
If Len(city) > 0 Then chosen = chosen & "and " & EncodedText("city") & " = '" & Replace(city, "'", "''") & "' "
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">What a column shows can be a small template of its own, filled from the whole record: a link, a price that
is worked out, or a grid. Here the last column of each order holds the grid of its lines, which turns its own pages.</p>
<% If Len(city) > 0 Then %>
<p class="chosen">Only orders from <b><%= Server.HTMLEncode(city) %></b>. <a href="contents.asp">Show all</a></p>
<% End If %>
<%
' The customer's name is worked out, by || '', so that a record counts as one of orders alone, and its key as the whole key.
db.CreateSource "orders", _
    "select orders.id, ordered, shipped, customers.name || '' as customer, " & EncodedText("customers.name") & " as customer_shown, " & _
    EncodedText("email") & " as email, " & EncodedText("city") & " as city, " & EncodedText("status") & " as status, " & _
    "freight, total, null as tax, null as lines from orders join customers on customers.id = customer_id " & chosen & _
    "order by orders.id desc", "shop"

With db.Source("orders")
    .Fields("id").Caption = "Order"
    .Fields("ordered").Caption = "Date"
    .Fields("customer").Caption = "Customer"
    .Fields("total").Caption = "Total"

    ' Formats of the platform: dates in words, money with two digits.
    .Fields("ordered").Format = "dddd, d mmmm yyyy"
    .Fields("shipped").Format = "Medium Date"
    .Fields("freight").Format = "#,##0.00"

    ' Contents: a link with the record's values, also as they stand in an address.
    .Fields("customer").Content = "<a href=""mailto:#~email~#?subject=Order%20#~id~#"">#~customer_shown~#</a>"
    .Fields("city").Content = "<a href=""#~url~#?city=$~city~$"">#~city~#</a>"

    ' Expressions of VBScript.
    .Fields("total").Content = "#~eval:FormatNumber(#~total~#, 2):eval~#"
    .Fields("tax").Content = "#~eval:FormatNumber(#~total~# / 6, 2):eval~#"

    ' A grid in each row. Its query may use what the content shows, so the order's number is part of it.
    .Fields("lines").Content = "<h3>Lines of order #~id~#</h3>#~grid_lines~#"
End With

db.CreateSource "lines", _
    "select line, " & EncodedText("products.name") & " as product, quantity, unit_price, discount, null as amount " & _
    "from order_lines join products on products.id = product_id where order_id = #~id~# order by line", "shop", 3, 3, True
Session("lines_unit_price_Content") = "#~eval:FormatNumber(#~unit_price~#, 2):eval~#"
Session("lines_discount_Content") = "#~eval:FormatNumber(#~discount~# * 100, 0):eval~# %"
Session("lines_amount_Content") = "#~eval:FormatNumber(#~quantity~# * #~unit_price~# * (1 - #~discount~#), 2):eval~#"

Set lines = Server.CreateObject("TabrixDb.DbGrid")
lines.Source = "lines"
lines.Template = Server.MapPath("templates/lines.htm")
lines.ROW = 3
db.Grid.Add lines, "lines"

db.ShowFilterIcons = False
db.CreateGrid "parcels", "orders", Server.MapPath("templates/contents.htm"), "", "", 4, 2
%>
<div class="tabrixdb records">
<%= db.Grid("parcels") %>
</div>
<%
ShowSource "contents.asp"
ShowSource "templates/contents.htm"
ShowSource "templates/lines.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
