<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Dim page_title, searched
page_title = "Product search"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">A filter form, made from a template by <code>CreateFilter</code>: for each column a comparison that its type allows, a value, and how it
joins the others. It comes and goes by the buttons of the grid. The icons in the captions filter by one column.</p>
<%
db.CreateSource "catalogue", _
    "select products.name as Product, categories.name as Category, price as Price, stock as ""In stock"", added as ""New since"", " & _
    EncodedText("products.name") & " as Product_shown, " & EncodedText("categories.name") & " as Category_shown " & _
    "from products join categories on categories.id = category_id where not discontinued order by products.name", "shop"

' Search and sort order go by the columns themselves.
ShowEncoded "catalogue", "Product,Category"
With db.Source("catalogue")
    .Fields("Price").Format = "#,##0.00"
    .Fields("New since").Format = "d mmmm yyyy"
    .Fields("New since").DateCaption = "Choose"

    .Fields("Product").ViewFilter = "TEXT;24"
    .Fields("Category").ViewFilter = "SELECT;LOOKUP;1;select name from categories order by name"
    .Fields("Price").ViewFilter = "TEXT;8"
    .Fields("In stock").ViewFilter = "TEXT;8"
    .Fields("New since").ViewFilter = "DATE;12"
End With

' First the grid, whose buttons show and hide the form.
db.CreateGrid "catalogue_list", "catalogue", Server.MapPath("templates/search.htm"), "", "", 10, 5
db.CreateFilter "catalogue", Server.MapPath("templates/search_form.htm"), False

searched = Session("catalogue_filterstr")
If Session("catalogue_list_filter") Then searched = Session("catalogue_list_filterstr")
If searched <> "" Then
%>
<p class="chosen">Only products with <code><%= Server.HTMLEncode(searched) %></code></p>
<% End If %>
<% If db.FilterForm("catalogue") <> "" Then %>
<div class="tabrixdb form"><%= db.FilterForm("catalogue") %></div>
<% End If %>
<div class="tabrixdb">
<%= db.Grid("catalogue_list") %>
</div>
<%
ShowSource "search.asp"
ShowSource "templates/search_form.htm"
ShowSource "templates/search.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
