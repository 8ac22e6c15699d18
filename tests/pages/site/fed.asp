<!-- #include file="connect.inc" --><%
Dim from : from = "list"
If Request("set") <> "" Then Session(Request("set")) = Request("to")
db.CreateSource "items", "select id from items", "shop"
db.CreateGrid "list", "items", Server.MapPath("templates/pointers.htm"), "", "", 3
If Request("mode") = "" Then
    db.CreateGrid "one", from, Server.MapPath("templates/form.htm"), "", "", 1, 1, True
    Response.Write Rows(db.Grid("list")) & " |" & Rows(db.Grid("one")) & " | " & from
Else
    db.CreateGrid "two", from, Server.MapPath("templates/form.htm"), "", "", 2, 1, True, True
    Response.Write Rows(db.Grid("list")) & " |" & db.Grid("two").Content & "|" & Session("two_Offset") & " " & Session("two_gridmode")
End If
%>
