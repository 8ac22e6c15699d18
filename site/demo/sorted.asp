<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Dim page_title
page_title = "Price list"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">The query sorts by category and price. A click on an arrow in a caption sorts by that column instead,
up or down; each visitor keeps an own order.</p>
<%
db.ShowFilterIcons = False
db.CreateSource "prices", _
    "select products.name, categories.name as category, price, stock, added, " & _
    EncodedText("products.name") & " as name_shown, " & EncodedText("categories.name") & " as category_shown " & _
    "from products join categories on categories.id = category_id " & _
    "where not discontinued order by categories.name, price desc", "shop"
ShowEncoded "prices", "name,category"
With db.Source("prices")
    .Fields("name").Caption = "Product"
    .Fields("category").Caption = "Category"
    .Fields("price").Caption = "Price"
    .Fields("stock").Caption = "In stock"
    .Fields("added").Caption = "New since"
    .Fields("price").Format = "#,##0.00"
    .Fields("added").Format = "yyyy-mm-dd"
End With
db.CreateGrid "prices", "prices", Server.MapPath("templates/prices.htm"), "", "", 15, 5
%>
<div class="tabrixdb">
<%= db.Grid("prices") %>
</div>
<%
ShowSource "sorted.asp"
ShowSource "templates/prices.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
