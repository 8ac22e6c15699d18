<!-- #include file="connect.inc" --><%
Response.Write db.UrlAddress & " " & db.UrlAddress(True) & " " & db.QueryInclude("") & " " & db.QueryInclude("PAGE=2&new=a b&none") & " " & db.QueryInclude("id=x y", False)
%>
