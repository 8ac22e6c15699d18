<html><body>
<p>before</p>
<% Sub S
    x = CLng("<b>")
End Sub
S %>
<p>after</p>
