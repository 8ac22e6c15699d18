<!-- #include file="connect.inc" --><%
Dim calendar, text
Set calendar = Server.CreateObject("TabrixDb.Calendar")
If Request("lcid") <> "" Then calendar.LCID = Request("lcid")
If Request("first") <> "" Then calendar.FirstDayOfWeek = Request("first")
calendar.Format = Request("format")
calendar.Template = Server.MapPath("templates/" & Request("template") & ".htm")
Select Case Request("date")
Case "": text = calendar.Show_Calendar
Case "empty": text = calendar.Show_Calendar("")
Case "field": text = calendar.Show_Calendar(CDate("2026-02-14"))
Case Else: text = calendar.Show_Calendar(Request("date"))
End Select
If Request("date") = "" Or Request("date") = "empty" Then text = InStr(text, "(" & MonthName(Month(Date)) & " " & Year(Date) & ")") > 0 And InStr(text, Day(Date) & " tabrixdb-day tabrixdb-today tabrixdb-chosen") > 0
Response.Write Replace(Replace(text, vbCr, ""), vbLf, "")
%>
