<%@ Language="VBScript" EnableSessionState=False %>
<% Option Explicit %>
<!-- #include file="files.asp" -->
<%
' Sends the bytes of a binary field that the tag #~column;blob_response=/TabrixDb/blob.asp_blob~# has put into the Application:
'
'   /TabrixDb/blob.asp?varname=photo_3
'
' What a page has shown to one visitor is in the Application for that visitor only; it needs no Session, so that the pictures of a
' page do not wait for one another. The engine marks the values that it has put there itself; no other value of the Application is sent.
Const kMark = "TabrixDb_blob:"

Dim name, bytes, kind, start
name = Request.QueryString("varname")
bytes = Empty
If Not IsEmpty(Application(kMark & name)) Then bytes = Application(name)

Response.Clear  ' the line breaks before this script
Response.AddHeader "X-Content-Type-Options", "nosniff"
' The same address may stand for another record a moment later.
Response.CacheControl = "private, no-cache"
If VarType(bytes) <> vbArray + vbByte Then
    Response.Status = "404 Not Found"
    Response.ContentType = "text/plain"
    Response.Write "There is no such picture or file. Load the page that shows it again."
ElseIf LenB(bytes) = 0 Then
    Response.Status = "204 No Content"
Else
    kind = PictureType(MidB(bytes, 1, kSignatureBytes))
    If kind = "" Then
        kind = "application/octet-stream"
        start = ""
        Dim i
        For i = 1 To 5
            If i <= LenB(bytes) Then start = start & Chr(AscB(MidB(bytes, i, 1)))
        Next
        ' Drawings can hold script. As an attachment they are shown in pages, by <img>, and never as pages.
        If Left(start, 4) = "<svg" Or start = "<?xml" Then kind = "image/svg+xml"
        Response.AddHeader "Content-Disposition", "attachment; filename=""" & SafeName(name) & """"
        Response.AddHeader "Content-Security-Policy", "default-src 'none'; style-src 'unsafe-inline'; sandbox"
    End If
    Response.ContentType = kind
    Response.BinaryWrite bytes
End If
Response.End
%>
