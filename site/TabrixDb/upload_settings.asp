<%
' What visitors may upload. Change this file to what the site needs; /TabrixDb/file_upload.asp includes it.

' The largest file, in bytes. The server's own limit for a request must be above it: limits.body_bytes in tabrixdb.toml.
Const UploadMaxBytes = 5242880

' The types that are taken, by the ending of the name, and those of controls that ask for a picture.
Const UploadTypes = "jpg jpeg png gif webp bmp pdf txt csv rtf doc docx xls xlsx odt ods zip"
Const UploadPictureTypes = "jpg jpeg png gif webp bmp"

' The folders of the site that take files; the first one where a control names none. They are made when they are needed.
' Each must lie below a folder of security.upload_folders in tabrixdb.toml, where pages are never run.
Const UploadFolders = "/uploads/ /uploads/documents/ /uploads/pictures/"

' All files of one folder together, in bytes, and how many they may be: no visitor can fill the disk or make the folder slow.
Const UploadFolderMaxBytes = 1073741824
Const UploadFolderMaxFiles = 10000

' Files for the database wait in /TabrixDb/temp/ until their record is saved. What was not saved is deleted after so many hours.
Const UploadTemporaryHours = 24

' Whether this visitor may upload. kind: "file", "picture", "database" or "database_picture"; folder: for the first two.
' A site with a log-in asks its session here, for example UploadIsAllowed = (Session("user") <> "").
Function UploadIsAllowed(kind, folder)
    UploadIsAllowed = True
End Function
%>
