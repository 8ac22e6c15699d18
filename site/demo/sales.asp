<%@ Language="VBScript" %>
<% Option Explicit %>
<!-- #include file="includes/shop.asp" -->
<!-- #include file="includes/source.asp" -->
<%
Dim page_title
page_title = "Sales by month"
%>
<!-- #include file="includes/head.asp" -->
<p class="lead">Two columns of numbers as bars, from the smallest to the greatest value of all months. The button writes all rows, in the order
that is shown, as a CSV file.</p>
<%
db.BarGraph = True
db.CreateSource "sales", "select month, orders, revenue from monthly_sales order by month desc", "shop"

With db.Source("sales")
    .Fields("month").Caption = "Month"
    .Fields("orders").Caption = "Orders"
    .Fields("revenue").Caption = "Revenue"
    .Fields("month").Content = "#~eval:MonthName(Month(""#~month~#""), True) & "" "" & Year(""#~month~#""):eval~#"
    .Fields("revenue").Format = "#,##0"
    .Fields("orders").Content = "#~orders;graph;width=120;color=#94a3b8~#"
    .Fields("revenue").Content = "#~revenue;graph;width=220;color=#1d4ed8~#"
End With

db.Download = True
db.ShowFilterIcons = False
db.CreateGrid "sales", "sales", Server.MapPath("templates/sales.htm"), "", "", 12, 6
%>
<div class="tabrixdb">
<%= db.Grid("sales") %>
</div>
<%
ShowSource "sales.asp"
ShowSource "templates/sales.htm"
db.CleanUp
%>
<!-- #include file="includes/foot.asp" -->
