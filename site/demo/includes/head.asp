<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title><%= Server.HTMLEncode(page_title) %> - TabrixDb demo</title>
<link rel="stylesheet" href="/TabrixDb/tabrixdb.css">
<link rel="stylesheet" href="/demo/demo.css">
<script src="/TabrixDb/tabrixdb.js"></script>
</head>
<body>
<header class="top"><nav aria-label="Demo pages">
<a class="name" href="/demo/">TabrixDb</a>
<a href="/demo/smallest.asp">Smallest</a>
<a href="/demo/orders.asp">Orders</a>
<a href="/demo/three_files.asp">Customers</a>
<a href="/demo/sorted.asp">Price list</a>
<a href="/demo/contents.asp">Contents</a>
<a href="/demo/controls.asp">Controls</a>
<a href="/demo/error.asp">Error</a>
</nav></header>
<main>
<h1><%= Server.HTMLEncode(page_title) %></h1>
