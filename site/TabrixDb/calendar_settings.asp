<%
' How the calendar of date fields looks; /TabrixDb/calendar.asp includes this file.

' The language of its names, 1031 German for instance; 0: that of the session's pages.
Const CalendarLCID = 0

' The first day of a week: 1 is Sunday, 2 Monday, 7 Saturday; 0: as the language has it.
Const CalendarFirstDayOfWeek = 0
%>
