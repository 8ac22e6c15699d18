<%
' The pages of the demo, for the bar on top and the cards of the index: file, name in the bar, title, what is to be seen.
Dim demo_pages
demo_pages = Array( _
    Array("smallest.asp", "Smallest", "The smallest grid", "Six lines of script and no template: the engine brings its own."), _
    Array("orders.asp", "Orders", "Orders", "A template of its own, striped rows, page counters, sort and filter icons."), _
    Array("three_files.asp", "Three files", "Three files", "Head, row and bar in three files, each of them a page by itself."), _
    Array("sorted.asp", "Price list", "Price list", "Sorted by the query, and by whoever clicks on a caption."), _
    Array("fast.asp", "Fast grid", "Best customers", "A fast grid: a query's first rows as a table, and nothing else."), _
    Array("contents.asp", "Contents", "Contents", "Links, evaluated prices, formatted dates, and in each order a grid of its lines with pages of its own."), _
    Array("controls.asp", "Controls", "Controls", "Every kind of input control, in rows that are edited in place."), _
    Array("customers.asp", "Customers", "Customers", "Rows that are edited where they stand, added and deleted; what can not be saved is said, and nothing typed is lost."), _
    Array("prices.asp", "Prices", "Price changes", "A whole page of prices edited at once, and saved in one go or not at all."), _
    Array("staff.asp", "Staff", "Staff", "A list, a form to edit and a form to add: three templates of one grid."), _
    Array("search.asp", "Search", "Product search", "A filter form with a comparison for each column, joined by And and Or, and filters behind the captions' icons."), _
    Array("order.asp", "Order desk", "Order desk", "A list of orders, the chosen one as a form that goes through them, and a grid of its lines."), _
    Array("catalogue.asp", "Catalogue", "Picture catalogue", "Pictures in the database: shown, chosen with a preview, and replaced."), _
    Array("documents.asp", "Documents", "Documents", "Files in a folder of the site, and a date field with its calendar."), _
    Array("sales.asp", "Sales", "Sales by month", "A bar beside each number, and all rows as a CSV file to download."), _
    Array("mail.asp", "Mail", "Write to the shop", "A form that becomes a mail; without a mail server, it waits in a folder."), _
    Array("error.asp", "Error", "An error on purpose", "What happens when a table, a template or a name is not there."))
%>
