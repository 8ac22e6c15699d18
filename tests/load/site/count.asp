<%
Session("views") = Session("views") + 1
Response.Write Session("views")
%>
