<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Dim page_title
page_title = "Price changes"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">All rows of the page are edited at once. One click saves them in one transaction: if the database refuses a single value, nothing
is saved, and all that was typed is still there.</p>
<%
db.ShowFilterIcons = False
db.CreateSource "pricing", _
    "select products.id, products.name, categories.name as category, price, stock, weight_kg, discontinued, " & _
    EncodedText("products.name") & " as name_shown, " & EncodedText("categories.name") & " as category_shown " & _
    "from products join categories on categories.id = category_id order by products.id", "shop"
ShowEncoded "pricing", "name,category"
With db.Source("pricing")
    .Fields("name").Caption = "Product"
    .Fields("category").Caption = "Category"
    .Fields("price").Caption = "Price"
    .Fields("stock").Caption = "In stock"
    .Fields("weight_kg").Caption = "Weight (kg)"
    .Fields("discontinued").Caption = "Discontinued"
    .Fields("price").Format = "#,##0.00"
    .Fields("discontinued").Format = "Yes/No"
End With
db.CreateGrid "pricing", "pricing", Server.MapPath("templates/price_changes.htm"), "", "", 10, 5
%>
<div class="tabrixdb">
<%= db.Grid("pricing") %>
</div>
<%
ShowSource "prices.asp"
ShowSource "templates/price_changes.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
