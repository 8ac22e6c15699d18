<% Server.Execute "execute_self.asp" %>
