<%@ Language="VBScript" CodePage=65001 %>
<% Option Explicit %>
<!-- #include file="calendar_settings.asp" -->
<%
' The month of a date, for the dialog that tabrixdb.js opens at a date field:
'
'   /TabrixDb/calendar.asp?date=3/5/2026     as the visitor has typed it, or year-month-day; today's month for what is no date
'
' Days are buttons whose value is year-month-day, which the engine reads in every language.
Dim calendar, shown
Response.CacheControl = "no-store"
shown = Request.QueryString("date")
If Not IsDate(shown) Then shown = ""

Set calendar = Server.CreateObject("TabrixDb.Calendar")
calendar.Template = Server.MapPath("calendar.htm")
calendar.LCID = CalendarLCID
calendar.FirstDayOfWeek = CalendarFirstDayOfWeek
calendar.Format = "yyyy-mm-dd"
Response.Write calendar.Show_Calendar(shown)
%>
