<%@ Language="VBScript" %><% Option Explicit
Dim sc, other, d, value, i
Set sc = Server.CreateObject("MSScriptControl.ScriptControl.1")
Sub Show(label)
    Response.Write label & ": " & Err.Number & " " & Err.Description & " | " & sc.Error.Number & " " & sc.Error.Line & ":" & _
        sc.Error.Column & " [" & sc.Error.Text & "] " & (sc.Error.Source = Err.Source) & vbLf
    Err.Clear
End Sub

' Settings
sc.Language = "vbscript" : sc.AllowUI = False : sc.UseSafeSubset = True : sc.SitehWnd = 0 : sc.State = 1
Response.Write TypeName(sc) & " " & sc.Language & " " & sc.Timeout & " " & sc.State & TypeName(CreateObject("ScriptControl")) & vbLf

' Names stay from call to call; Eval compares
sc.AddCode "Dim rate" & vbCrLf & "rate = 1.5" & vbCrLf & "Function Price(net, ByVal pieces)" & vbCrLf & _
    "  Price = net * pieces * rate" & vbCrLf & "  net = 0" & vbCrLf & "End Function" & vbCrLf & "Sub Noted : End Sub"
sc.ExecuteStatement "x = Price(2, 3) : y = Array(1, 2)"
Response.Write sc.Eval("x") & " " & sc.Eval("x = 9") & sc.Eval("y(1)") & vbLf
value = 10
Response.Write sc.Run("PRICE", value, 2) & " " & value & " " & IsEmpty(sc.Run("Noted")) & vbLf
sc.AddCode "Function Price(net, pieces) : Price = ""new "" & net : End Function"
For i = 1 To 200 ' more than are kept compiled
    value = sc.Eval("Price(" & i & ", rate)")
Next
Response.Write value & " " & sc.Eval("Price(1, rate)") & vbLf

' Objects
Set d = CreateObject("Scripting.Dictionary")
d("a") = 1
sc.AddCode "Function CountOfBoth : CountOfBoth = Count + d.Count : End Function"
sc.AddObject "d", d, True
sc.AddObject "page", Response
sc.ExecuteStatement "d(""b"") = 2 : Add ""c"", 3 : page.Write Exists(""c"") & Item(""a"") & Len(""x"") & CountOfBoth()"
Response.Write " " & d.Count & " " & sc.Eval("d").Count & TypeName(sc.Eval("Nothing")) & vbLf

' Errors are the page's, and stay in Error
On Error Resume Next
sc.Eval "1 +" : Show "syntax"
sc.AddCode "Sub Bad" & vbCrLf & "  x = 1 / 0" & vbCrLf & "End Sub" : Show "none"
sc.Run "Bad" : Show "run-time"
sc.Error.Clear : Show "cleared"
sc.ExecuteStatement "Err.Raise 1234, ""me"", ""my own""" : Show "raised"
sc.Eval "CreateObject(""Scripting.FileSystemObject"")" : Show "create"
sc.ExecuteStatement "Set f = GetObject(""C:\a.txt"")" : Show "get"
sc.Eval "Response.Status" : Show "page"
sc.ExecuteStatement "Count = 1" : Show "member"
sc.Run "Nobody", 1 : Show "nobody"
sc.Run "Price" : Show "arguments"
sc.AddObject "n", Nothing : Show "object"
sc.Language = "JScript" : Show "language"
sc.Timeout = -2 : Show "timeout"
sc.AddObject "me2", sc
sc.ExecuteStatement "me2.Reset" : Show "busy"
Response.Write sc.Eval("me2.Eval(""rate * 2"")") & vbLf
sc.Reset
Response.Write sc.Eval("IsEmpty(rate) & IsEmpty(me2)") & vbLf
Set sc = Nothing
%>
