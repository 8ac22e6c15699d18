<%@ Language="VBScript" %><% Option Explicit
Dim d, key, fs, file, path
Set d = CreateObject("Scripting.Dictionary")
d.Add "b", 1
d("a") = 2
d("B") = 3
d(1) = "one" : d("1") = "text"
Set d("self") = Request
For Each key In d
    Response.Write key & " "
Next
Response.Write "|" & d.Count & d.Exists("B") & d.Exists("none") & d(1) & d("1") & d("missing") & d.Count & TypeName(d)
d.Key("a") = "z"
d.Remove "b"
Response.Write "|" & Join(Array(d.Keys()(0), d.Keys()(1)), ",") & d.Items()(0)
On Error Resume Next
d.Add "z", 1
Response.Write "|" & Err.Number
Err.Clear
d.Remove "none"
Response.Write "|" & Err.Number
d.RemoveAll
d.CompareMode = 1
d("Key") = 1
Response.Write "|" & d("KEY") & d.Count & vbCrLf
On Error GoTo 0
Set fs = Server.CreateObject("Scripting.FileSystemObject")
path = Server.MapPath("inc") & "\PART.asp"
Response.Write fs.FileExists(path) & fs.FileExists(Server.MapPath("none.txt")) & fs.GetExtensionName(path) & fs.GetFileName(path)
Set file = fs.OpenTextFile(path)
Response.Write "|" & file.Read(3) & "|" & file.Line & file.AtEndOfStream & "|" & Server.HTMLEncode(file.ReadAll)
On Error Resume Next
file.ReadLine
Response.Write "|" & Err.Number
Err.Clear
file.Write "x"
Response.Write "|" & Err.Number
Err.Clear
fs.OpenTextFile Server.MapPath("none.txt")
Response.Write "|" & Err.Number
Err.Clear
fs.CreateTextFile Server.MapPath("no_folder/none.txt")
Response.Write "|" & Err.Number
%>
