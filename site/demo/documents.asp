<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Dim page_title
page_title = "Documents"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">The files lie in a folder of the site, where nothing is ever run; the table keeps their names. <code>upload_settings.asp</code> says
which types are taken and how large they may be. Dates are typed or chosen from the calendar.</p>
<%
db.CreateSource "documents", "select id, title, file, valid" & Encoded("title") & ", " & _
    "case when coalesce(file, '') = '' then '<span class=""quiet"">no file yet</span>' else '<a href=""/uploads/documents/' || " & EncodedText("file") & _
    " || '"">' || " & EncodedText("file") & " || '</a>' end as file_shown from documents order by id", "shop"

ShowEncoded "documents", "title,file"
With db.Source("documents")
    .Fields("title").Caption = "Title"
    .Fields("file").Caption = "File"
    .Fields("valid").Caption = "Valid until"
    .Fields("file").UploadCaption = "Upload"
    .Fields("valid").Format = "d mmm yyyy"
    .Fields("valid").DateCaption = "Choose"
    .Fields("valid").CanBeNull = True
    .Fields("file").CanBeNull = True
End With

db.ShowFilterIcons = False
db.CreateGrid "documents", "documents", Server.MapPath("templates/documents.htm"), "", "", 8, 4
%>
<div class="tabrixdb">
<%= db.Grid("documents") %>
</div>
<%
ShowSource "documents.asp"
ShowSource "templates/documents.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
