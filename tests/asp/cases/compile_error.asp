<p>not written</p>
<% x = 1
   If x Then Else End Sub
%>
