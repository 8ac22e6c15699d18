<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<%
Dim page_title
page_title = "An error on purpose"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">What a visitor sees when something is wrong. The message comes from a template of the site,
<code>/TabrixDb/tabrixdb_error.htm</code>, and the server goes on.</p>
<ul class="choices">
<li><a href="?kind=table">A table that is not there</a></li>
<li><a href="?kind=connection">An unknown connection</a></li>
<li><a href="?kind=source">An unknown source</a></li>
<li><a href="?kind=duplicate">A name given twice</a></li>
<li><a href="?kind=template">A missing template</a></li>
<li><a href="?kind=script">A mistake in the page itself</a></li>
</ul>
<%
Select Case Request("kind")
Case "connection"
    db.CreateSource "orders", "select * from orders", "warehouse"
Case "source"
    db.CreateGrid "orders", "parcels"
Case "duplicate"
    db.CreateSource "orders", "select * from orders", "shop"
    db.CreateSource "orders", "select * from customers", "shop"
Case "template"
    db.CreateSource "orders", "select * from orders", "shop"
    db.CreateGrid "orders", "orders", Server.MapPath("templates/not_written_yet.htm")
Case "script"
    Response.Write CLng("twelve")
Case Else
    db.CreateSource "orders", "select * from no_such_table", "shop"
End Select

Response.Write "<p>This line is not reached.</p>"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
