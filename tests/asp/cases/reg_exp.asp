<% Option Explicit
Dim a, b, sc
Set a = New RegExp
Set b = Server.CreateObject("VBScript.RegExp")
a.Pattern = "\w+" : b.Pattern = a.Pattern
Response.Write a.Execute("one two")(0) & b.Replace("one two", "[$&]")
Set sc = CreateObject("MSScriptControl.ScriptControl")
sc.ExecuteStatement "Set r = New RegExp : r.Pattern = ""o"""
Response.Write sc.Eval("r.Replace(""one"", ""0"")")
%>
