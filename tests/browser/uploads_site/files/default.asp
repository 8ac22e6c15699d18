<%@ Language="VBScript" %>
<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Files</title>
<script src="/TabrixDb/tabrixdb.js"></script>
<script>
// For the page's own ways to post the grid: the command and its parameters.
var words = ['', ''];
function named(form) {
    [form.files_command.value, form.files_params.value] = words;
    return form;
}
</script>
</head>
<body>
<%
Dim db
Set db = Server.CreateObject("TabrixDb.Pro")
db.CreateConnection "shop", "Provider=SQLite;Data Source=" & Server.MapPath("/demo/data/shop.db")
db.CreateSource "files", "select * from files order by id", "shop"
With db.Source("files")
    .Fields("photo").Content = "<img class=""photo"" alt=""photo"" src=""#~photo;blob_response=/TabrixDb/blob.asp_blob~#"">"
    .Fields("photo").ViewEdit = "UPLOADDBIMAGE"
    .Fields("document").ViewEdit = "UPLOADDB"
    .Fields("sheet").ViewEdit = "UPLOAD;20;/uploads/documents/"
    .Fields("face").ViewEdit = "UPLOADIMAGE;../uploads/pictures/;20;20"
    .Fields("title").ViewEdit = "TEXT;20;;R"
End With
db.CreateGrid "files", "files", Server.MapPath("files.htm"), , , 5, 5
Response.Write db.Grid("files")
db.CleanUp
%>
</body>
</html>
