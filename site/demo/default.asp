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
<% For Each demo_page In demo_pages %>
<li class="card">
<h2><a href="<%= demo_page(0) %>"><%= demo_page(2) %></a></h2>
<p><%= demo_page(3) %></p>
<span class="file"><%= demo_page(0) %></span>
</li>
<% Next %>
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
