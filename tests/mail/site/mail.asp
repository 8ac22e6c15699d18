<%
' Sends what the form says: through the engine, or with `object` through the mail object itself.
Dim db, mail
If Request("object") = "" Then
    Set db = Server.CreateObject("TabrixDb.Pro")
    If Request("id") <> "" Then
        db.CreateConnection "shop", "Provider=SQLite;Data Source=" & Server.MapPath("/demo/data/shop.db")
        db.CreateSource "s", "select name, null as gap, name as ""the name"" from products where id = " & Request("id"), "shop"
        db.SendEmail Request("from"), Request("to"), Request("subject"), Request("body"), Request("format"), db.Source("s").RecordSet, Request("path")
    ElseIf Request("format") = "" Then
        db.SendEmail Request("from"), Request("to"), Request("subject"), Request("body")
    Else
        db.SendEmail Request("from"), Request("to"), Request("subject"), Request("body"), Request("format"), , Request("path")
    End If
Else
    Set mail = Server.CreateObject("CDONTS.NewMail")
    mail.Cc = Request("cc")
    mail.Bcc = Request("bcc")
    mail.BodyFormat = 0
    mail.MailFormat = 0
    mail.ContentBase = Request("base")
    mail.Value("Reply-To") = Request("reply")
    mail.Value("X-Shop") = Request("header")
    If Request("name") <> "" Then mail.AttachFile Server.MapPath("/mail.asp"), Request("name")
    mail.Send Request("from"), Request("to"), Request("subject"), Request("body"), 2
End If
Response.Write "sent"
%>
