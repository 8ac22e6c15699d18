<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<!-- #include file="includes/encoded.asp" -->
<%
Const kTexts = "title,about,topic,room,level,included,language,days"
Dim page_title
page_title = "Controls"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">Every kind of input control. The template names the control in a column's tag, or the page sets it. A row shows
its controls while it is edited, one row at a time.</p>
<%
db.CreateSource "workshops", _
    "select id, title, about, topic, room, held, seats, fee, bookable, level, included, languages, language, weekdays, days" & _
    Encoded(kTexts) & " from workshops order by held", "shop"

ShowEncoded "workshops", kTexts
With db.Source("workshops")
    .Fields("held").Format = "d mmmm yyyy"
    .Fields("held").DateCaption = "Choose"
    .Fields("fee").Format = "0.00"
    .Fields("bookable").Format = "Yes/No"

    .Fields("title").Caption = "Title"
    .Fields("topic").Caption = "Topic"
    .Fields("held").Caption = "Date"
    .Fields("fee").Caption = "Fee"

    ' Controls that the page sets. Those of the other columns stand in the template.
    .Fields("topic").ViewEdit = "SELECT;LOOKUP;1;select name from categories order by name;;R"
    .Fields("included").ViewEdit = "CHECKBOX_LIST;apron~Apron,tea~Tea,recipes~Recipes"
    .Fields("language").ViewEdit = "GETCHOICE_FROMFIELD;languages"
    .Fields("days").ViewEdit = "GETCHECKBOX_FROMFIELD;weekdays"
End With

db.CreateGrid "workshops", "workshops", Server.MapPath("templates/workshops.htm"), "", "", 4, 2
%>
<div class="tabrixdb records">
<%= db.Grid("workshops") %>
</div>

<table class="legend">
<caption>Where each control comes from</caption>
<thead><tr><th>Column</th><th>Control</th><th>View</th></tr></thead>
<tbody>
<tr><td>Title, Seats, Fee</td><td>Text box</td><td><code>#~title[tx;40;;R,60]~#</code></td></tr>
<tr><td>About</td><td>Several lines, ten characters at least</td><td><code>#~about[me;3;60;;10,400]~#</code></td></tr>
<tr><td>Room</td><td>List of given entries</td><td><code>#~room[sn;;Kitchen,Loft,Cellar,Garden]~#</code></td></tr>
<tr><td>Topic</td><td>List of a query</td><td><code>SELECT;LOOKUP;1;select name from categories order by name;;R</code></td></tr>
<tr><td>Date</td><td>Text box with a calendar</td><td><code>#~held[dt;14]~#</code></td></tr>
<tr><td>Booking open</td><td>One check box</td><td><code>#~bookable[xi;True]~#</code></td></tr>
<tr><td>Level</td><td>One of several</td><td><code>#~level[cl;Beginners,Everyone,Advanced]~#</code></td></tr>
<tr><td>Included</td><td>Any of several</td><td><code>CHECKBOX_LIST;apron~Apron,tea~Tea,recipes~Recipes</code></td></tr>
<tr><td>Language</td><td>One of those that the record names</td><td><code>GETCHOICE_FROMFIELD;languages</code></td></tr>
<tr><td>Days</td><td>Any of those that the record names</td><td><code>GETCHECKBOX_FROMFIELD;weekdays</code></td></tr>
</tbody>
</table>
<p class="lead">Four more kinds take files: <code>UPLOAD</code>, <code>UPLOADIMAGE</code>, <code>UPLOADDB</code> and
<code>UPLOADDBIMAGE</code>; see the <a href="catalogue.asp">catalogue</a> and the <a href="documents.asp">documents</a>.</p>
<%
ShowSource "controls.asp"
ShowSource "templates/workshops.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
