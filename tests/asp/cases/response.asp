<%@ Language="VBScript" %><% Option Explicit
Response.Write "a"
Response.Write 1.5
Response.Write #3/1/2026#
Response.Write True
Response.Write Null
Response.Write Empty
Response.Clear
Response.Write "b"
Response.BinaryWrite Request.BinaryRead(0)
Response.ContentType = "text/plain"
Response.Status = "404 Not Here"
Response.AddHeader "X-Shop", "ä"
Response.Cookies("plain") = "a b;c"
Response.Cookies("keys")("one") = "1&2"
Response.Cookies("KEYS")("two") = 2
Response.Cookies("keys").Path = "/shop"
Response.Cookies("keys").HttpOnly = True
Response.Cookies("old") = ""
Response.Cookies("old").Domain = "shop.test"
Response.Cookies("old").Secure = True
Response.ExpiresAbsolute = #1/1/1999#
Response.CacheControl = "no-store"
%>|<%= Response.Status %>|<%= Response.ContentType %>|<%= Response.Buffer %>|<%= Response.Cookies.Count %>|<%= TypeName(Response) %>
