end<% Response.End %>never
