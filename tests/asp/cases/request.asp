<%@ Language="VBScript" %><% Option Explicit
Dim name, value
Response.Write Request("a") & "|" & Request("both") & "|" & Request("f") & "|" & Request("c") & "|" & Request("HTTP_HOST") & vbCrLf
Response.Write Request.QueryString & "|" & Request.Form & vbCrLf
Response.Write Request.QueryString("A").Count & Request.QueryString("a")(1) & Request.QueryString("a").Item(2) & Request.QueryString.Item("a")(2) & vbCrLf
Response.Write Request.QueryString("none").Count & IsObject(Request.QueryString("none")) & (Request.QueryString("none") = "") & IsEmpty(Request("none")) & "[" & Request("none") & "]" & vbCrLf
For Each name In Request.QueryString
    Response.Write name & "="
    For Each value In Request.QueryString(name)
        Response.Write value & ";"
    Next
Next
Response.Write vbCrLf & Request.Form.Count & Request.Form.Key(1) & Request.Form(1) & vbCrLf
Response.Write Request.Cookies("c") & Request.Cookies("c").HasKeys & "|" & Request.Cookies("basket").HasKeys & Request.Cookies("basket")("pear") & Request.Cookies("none") & vbCrLf
For Each name In Request.Cookies("basket")
    Response.Write name & " "
Next
Response.Write vbCrLf & Request.ServerVariables("REQUEST_METHOD") & " " & Request.ServerVariables("URL") & " " & Request.ServerVariables("QUERY_STRING") & " " & Request.ServerVariables("HTTPS") & " " & Request.ServerVariables("CONTENT_LENGTH") & vbCrLf
Response.Write Request.TotalBytes & TypeName(Request("a")) & TypeName(Request.Form)
On Error Resume Next
Request.BinaryRead 1
Response.Write " " & Hex(Err.Number) & " " & Err.Source
%>
