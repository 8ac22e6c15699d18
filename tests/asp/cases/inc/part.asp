[<%= x %><% x = 7 : Session("part") = "here" %>]
