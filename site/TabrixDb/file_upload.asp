<%@ Language="VBScript" CodePage=65001 %>
<% Option Explicit %>
<!-- #include file="upload_settings.asp" -->
<!-- #include file="files.asp" -->
<%
' Takes the files of the upload controls. tabrixdb.js asks it; each answer is JSON, with "error" when something is wrong:
'
'   GET  ?kind=K&folder=F              what is taken: {"types": ".jpg,.png", "most": 5242880}
'   POST ?kind=K&folder=F&key=X        a form (multipart/form-data) with one file: {"file": "name"}, which the field gets
'   POST ?kind=K&folder=F&discard=X    takes back the file that this visitor has uploaded with that key: {}
'
' kind: "file" and "picture" go into a folder of the site, "database" and "database_picture" into /TabrixDb/temp/, from where
' the engine takes them when the record is saved. key: 32 random hexadecimal digits, part of the name of temporary files, so
' that nobody else can name them; so an upload can be taken back whose answer never arrived. Posts carry the header "X-TabrixDb: upload", which pages of other sites can't send.
Const kTemporaryFolder = "/TabrixDb/temp/"
Const kTemporaryEnding = ".upload"          ' of no known type: no server sends such files or runs them
Const kHeadBytes = 4096                     ' at most, before the file in the form
Const kOwnUploads = "TabrixDb_uploads"      ' of the session: "|key path|key path|"
Const kMostOwnUploads = 50

Dim files, kind, folder
Set files = Server.CreateObject("Scripting.FileSystemObject")
Response.ContentType = "application/json"
Response.AddHeader "X-Content-Type-Options", "nosniff"
Response.CacheControl = "no-store"

kind = Request.QueryString("kind")
If InStr(" file picture database database_picture ", " " & kind & " ") = 0 Then Refuse "400 Bad Request", "This is no kind of upload."
folder = FolderOf(kind, Request.QueryString("folder"))
If folder = "" Then Refuse "403 Forbidden", "Files can not be uploaded into this folder."
If Not UploadIsAllowed(kind, folder) Then Refuse "403 Forbidden", "You may not upload files here."

If Request.ServerVariables("REQUEST_METHOD") <> "POST" Then
    Answer """types"": " & Json("." & Replace(TypesOf(kind), " ", ",.")) & ", ""most"": " & UploadMaxBytes
ElseIf Request.ServerVariables("HTTP_X_TABRIXDB") <> "upload" Then
    Refuse "403 Forbidden", "Files are uploaded from pages of this site only."
ElseIf Request.QueryString("discard") <> "" Then
    Discard Request.QueryString("discard")
    Answer ""
Else
    Take
End If

' --- The upload -------------------------------------------------------------------------------------------------

Sub Take()
    Dim body, whole, start, length, name, extension, path
    If Matches(Key(), "^[0-9a-f]{32}$").Count = 0 Then Refuse "400 Bad Request", "This upload has no key."
    If Request.TotalBytes > UploadMaxBytes + kHeadBytes * 2 Then RefuseSize
    If Request.TotalBytes = 0 Then RefuseBroken
    body = Request.BinaryRead(Request.TotalBytes)
    Set whole = NewStream()
    whole.Write body
    FindFile body, whole, name, start, length
    If length > UploadMaxBytes Then RefuseSize
    extension = LCase(files.GetExtensionName(name))
    CheckType extension, MidB(body, start, kSignatureBytes)
    If Not HasRoom(Server.MapPath(folder), length) Then
        Refuse "507 Insufficient Storage", "There is no room for more files at the moment."
    End If
    path = Store(PartOf(whole, start, length), SafeName(files.GetBaseName(name)), extension)
    Session(kOwnUploads) = LastOf(Session(kOwnUploads) & "|" & Key() & " " & path)
    Answer """file"": " & Json(files.GetFileName(path))
End Sub

' Finds the one file in a form: its name, and its place in the form's bytes, from 1.
Sub FindFile(body, whole, name, start, length)
    Dim boundary, line_end, head, finish, after
    boundary = BoundaryOf(Request.ServerVariables("CONTENT_TYPE"))
    If boundary = "" Then Refuse "400 Bad Request", "This is no upload of a file."
    line_end = BytesOf(vbCrLf)
    boundary = BytesOf("--" & boundary)
    head = LeftB(body, kHeadBytes)
    If InStrB(1, head, boundary & line_end) <> 1 Then RefuseBroken
    start = InStrB(1, head, line_end & line_end)
    If start = 0 Then RefuseBroken
    name = FileNameIn(TextOf(PartOf(whole, LenB(boundary) + 3, start - LenB(boundary) - 3)))
    start = start + 4
    finish = InStrB(start, body, line_end & boundary)
    If finish = 0 Then RefuseBroken
    length = finish - start
    after = MidB(body, finish + 2 + LenB(boundary), 2)
    If InStrB(1, after, line_end) = 1 Then Refuse "400 Bad Request", "One file at a time, please."
    If InStrB(1, after, BytesOf("--")) <> 1 Then RefuseBroken
End Sub

' The name that the browser gives, without the folders of the visitor's computer.
Function FileNameIn(headers)
    Dim found
    Set found = Matches(headers, "\bfilename=""([^""]*)""")
    If found.Count <> 1 Then Refuse "400 Bad Request", "Choose a file first."
    FileNameIn = found(0).SubMatches(0)
    If Matches(FileNameIn, "[\x00-\x1F\x7F]").Count > 0 Then Refuse "400 Bad Request", "The file's name can not be used; rename the file."
    Set found = Matches(Replace(FileNameIn, "%22", """"), "[^/\\:]*$")  ' a quote, as browsers send it
    FileNameIn = Trim(found(0).Value)
    If FileNameIn = "" Then Refuse "400 Bad Request", "Choose a file first."
End Function

Function BoundaryOf(content_type)
    Dim found
    BoundaryOf = ""
    Set found = Matches(content_type, "^multipart/form-data;.*\bboundary=(?:""([^""]{1,70})""|([^"";\s]{1,70}))")
    If found.Count = 1 Then BoundaryOf = found(0).SubMatches(0) & found(0).SubMatches(1)
End Function

Sub CheckType(extension, head)
    Dim wanted
    If extension = "" Or InStr(" " & TypesOf(kind) & " ", " " & extension & " ") = 0 Then
        Refuse "415 Unsupported Media Type", "Files of this type are not taken. Take one of these: " & Replace(TypesOf(kind), " ", ", ") & "."
    End If
    Select Case extension
        Case "jpg", "jpeg": wanted = "image/jpeg"
        Case "png", "gif", "webp", "bmp": wanted = "image/" & extension
        Case Else: wanted = ""
    End Select
    If PictureType(head) <> wanted Then Refuse "415 Unsupported Media Type", "The content of this file is not what its name says (" & extension & ")."
End Sub

' Writes the file under a name that no other file has; the path is the result.
Function Store(content, base, extension)
    Dim place, name, number, failed
    place = Server.MapPath(folder)
    MakeFolder place
    For number = 1 To 100
        If folder = kTemporaryFolder Then
            name = Key() & "-" & base & "." & extension & kTemporaryEnding
        ElseIf number = 1 Then
            name = base & "." & extension
        ElseIf number < 100 Then
            name = base & "-" & number & "." & extension
        Else
            name = base & "-" & Key() & "." & extension
        End If
        Store = files.BuildPath(place, name)
        If Not files.FileExists(Store) Then
            On Error Resume Next
            content.SaveToFile Store, 1  ' never in the place of another
            failed = (Err.Number <> 0)
            On Error GoTo 0
            If Not failed Then Exit Function
            If Not files.FileExists(Store) Then Exit For
        End If
    Next
    Refuse "500 Internal Server Error", "The file could not be stored. Please try again later."
End Function

Function Key()
    Key = LCase(Request.QueryString("key"))
End Function

' --- What is taken, and where ---------------------------------------------------------------------------------------

Function TypesOf(kind)
    TypesOf = UploadTypes
    If kind = "picture" Or kind = "database_picture" Then TypesOf = UploadPictureTypes
End Function

' The folder as the settings spell it; "" for one that takes no files.
Function FolderOf(kind, ByVal asked)
    Dim known
    FolderOf = ""
    If kind = "database" Or kind = "database_picture" Then
        FolderOf = kTemporaryFolder
    ElseIf asked = "" Then
        FolderOf = Split(UploadFolders & " ", " ")(0)
    Else
        If Right(asked, 1) <> "/" Then asked = asked & "/"
        For Each known In Split(UploadFolders, " ")
            If LCase(known) = LCase(asked) Then FolderOf = known
        Next
    End If
End Function

Sub MakeFolder(path)
    If files.FolderExists(path) Then Exit Sub
    MakeFolder files.GetParentFolderName(path)
    files.CreateFolder path
End Sub

' Whether one more file fits into the folder. Goes through it once, and deletes old temporary files on the way.
Function HasRoom(path, length)
    Dim file, size, bytes, count
    bytes = length
    count = 1
    If files.FolderExists(path) Then
        For Each file In files.GetFolder(path).Files
            size = SizeOrDelete(file)
            If Not IsEmpty(size) Then
                bytes = bytes + size
                count = count + 1
            End If
        Next
    End If
    HasRoom = (bytes <= UploadFolderMaxBytes And count <= UploadFolderMaxFiles)
End Function

' --- What is not kept --------------------------------------------------------------------------------------------------

' What other visitors have uploaded is not in the list of this one.
Sub Discard(wanted)
    Dim own, upload
    own = "|"
    For Each upload In Split(Session(kOwnUploads), "|")
        If Len(upload) > 33 And Left(upload, 33) = wanted & " " Then
            If files.FileExists(Mid(upload, 34)) Then files.DeleteFile Mid(upload, 34)
        ElseIf upload <> "" Then
            own = own & upload & "|"
        End If
    Next
    Session(kOwnUploads) = own
End Sub

' The latest uploads of a list, between "|".
Function LastOf(own)
    Dim uploads, i
    Set uploads = Matches(own, "[^|]+")
    LastOf = "|"
    For i = 0 To uploads.Count - 1
        If i >= uploads.Count - kMostOwnUploads Then LastOf = LastOf & uploads(i).Value & "|"
    Next
End Function

' Empty for a file that is deleted because it is old, or that another visitor has taken back in this moment.
Function SizeOrDelete(file)
    Dim minutes
    On Error Resume Next
    minutes = DateDiff("n", file.DateLastModified, Now)
    If folder = kTemporaryFolder And Right(file.Name, Len(kTemporaryEnding)) = kTemporaryEnding And minutes >= UploadTemporaryHours * 60 Then
        file.Delete
    Else
        SizeOrDelete = file.Size
    End If
End Function

' --- Bytes and text ------------------------------------------------------------------------------------------------------

Function NewStream()
    Dim stream
    Set stream = Server.CreateObject("ADODB.Stream")
    stream.Type = 1
    stream.Open
    Set NewStream = stream
End Function

' A part of a stream as one of its own; start from 1.
Function PartOf(stream, start, length)
    Dim part
    Set part = NewStream()
    stream.Position = start - 1
    If length > 0 Then stream.CopyTo part, length
    part.Position = 0
    Set PartOf = part
End Function

Function TextOf(stream)
    stream.Type = 2
    stream.Charset = "utf-8"
    TextOf = stream.ReadText
End Function

Function BytesOf(text)
    Dim i
    For i = 1 To Len(text)
        BytesOf = BytesOf & ChrB(Asc(Mid(text, i, 1)))
    Next
End Function

Function Matches(text, pattern)
    Dim expression
    Set expression = New RegExp
    expression.Global = True
    expression.IgnoreCase = True
    expression.Pattern = pattern
    Set Matches = expression.Execute(text)
End Function

' --- Answers ------------------------------------------------------------------------------------------------------------

Sub Answer(members)
    Response.Clear
    Response.Write "{" & members & "}"
    Response.End
End Sub

Sub Refuse(status, message)
    Response.Status = status
    Answer """error"": " & Json(message)
End Sub

Sub RefuseBroken()
    Refuse "400 Bad Request", "The upload did not arrive whole. Please try again."
End Sub

Sub RefuseSize()
    Refuse "413 Content Too Large", "The file is too large. At most " & FormatNumber(UploadMaxBytes / 1048576, 1) & " MB are taken."
End Sub

' A text as JSON has it, in ASCII.
Function Json(text)
    Dim i, code
    For i = 1 To Len(text)
        code = AscW(Mid(text, i, 1)) And &HFFFF&
        If code < 32 Or code > 126 Or code = 34 Or code = 92 Then
            Json = Json & "\u" & Right("000" & Hex(code), 4)
        Else
            Json = Json & Chr(code)
        End If
    Next
    Json = """" & Json & """"
End Function
%>
