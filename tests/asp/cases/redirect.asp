gone<% Response.Cookies("kept") = 1
Response.Redirect "/a b.asp?x=" & Chr(13) & Chr(10) & "Set-Cookie: y=1" %>never
