<% Response.Write "in"
a = 1 / 0 %>
