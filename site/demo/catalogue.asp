<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Dim page_title
page_title = "Picture catalogue"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">The pictures are binary fields of the database; <code>/TabrixDb/blob.asp</code> sends them. Press Edit, then the picture, to choose
another: it is shown before it is sent, and saved with the record.</p>
<%
db.CreateSource "catalogue", "select id, name, price, picture" & Encoded("name") & " from products order by id", "shop"

ShowEncoded "catalogue", "name"
With db.Source("catalogue")
    .Fields("name").Caption = "Name"
    .Fields("price").Caption = "Price"
    .Fields("price").Format = "#,##0.00"
    ' The engine puts the bytes where blob.asp finds them, and writes its address.
    .Fields("picture").Content = "<img class=""picture"" src=""#~picture;blob_response=/TabrixDb/blob.asp_blob~#"" alt=""Picture of #~name_shown~#"">"
    ' A file for the database; the picture named here serves where a record has none.
    .Fields("picture").ViewEdit = "UPLOADDBIMAGE;/demo/images/no_picture.png"
End With

db.ShowFilterIcons = False
db.CreateGrid "catalogue", "catalogue", Server.MapPath("templates/catalogue.htm"), "", "", 12, 4
%>
<div class="tabrixdb">
<%= db.Grid("catalogue") %>
</div>
<%
ShowSource "catalogue.asp"
ShowSource "templates/catalogue.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
