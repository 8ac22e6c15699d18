<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<%
Dim page_title, shop, counted
page_title = "Database tables on web pages"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">A page creates the engine, names a connection, a query and an HTML template, and writes what comes back:
a grid that pages, sorts and filters. These pages run on a small shop's database.</p>

<ul class="cards">
<%
Sub Card(file, title, text)
%>
<li class="card">
<h2><a href="<%= file %>"><%= title %></a></h2>
<p><%= text %></p>
<span class="file"><%= file %></span>
</li>
<%
End Sub

Card "smallest.asp", "The smallest grid", "Six lines of script and no template: the engine brings its own."
Card "orders.asp", "Orders", "A template of its own, striped rows, page counters, sort and filter icons."
Card "three_files.asp", "Customers", "Head, row and bar in three files, each of them a page by itself."
Card "sorted.asp", "Price list", "Sorted by the query, and by whoever clicks on a caption."
Card "contents.asp", "Contents", "Links, evaluated prices, formatted dates, and in each order a grid of its lines with pages of its own."
Card "controls.asp", "Controls", "Every kind of input control, in rows that are edited in place."
Card "error.asp", "An error on purpose", "What happens when a table, a template or a name is not there."
%>
</ul>

<dl class="facts">
<%
Set shop = Server.CreateObject("ADODB.Connection")
shop.Open "Provider=SQLite;Data Source=" & Server.MapPath("/demo/data/shop.db")
Set counted = shop.Execute( _
    "select 'customers' as what, count(*) as many from customers union all " & _
    "select 'products', count(*) from products union all " & _
    "select 'orders', count(*) from orders union all " & _
    "select 'order lines', count(*) from order_lines")
Do Until counted.EOF
%>
<div><dt><%= counted("what") %></dt><dd><%= FormatNumber(counted("many"), 0) %></dd></div>
<%
    counted.MoveNext
Loop
counted.Close
shop.Close
db.CleanUp
%>
</dl>
<!-- #include file="includes/foot.asp" -->
