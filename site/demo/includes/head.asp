<!-- #include file="pages.asp" -->
<% Dim demo_page %><!DOCTYPE html>
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
<%
For Each demo_page In demo_pages
    Response.Write "<a href=""/demo/" & demo_page(0) & """"
    If demo_page(2) = page_title Then Response.Write " aria-current=""page"""
    Response.Write ">" & demo_page(1) & "</a>" & vbCrLf
Next
%></nav></header>
<main>
<h1><%= Server.HTMLEncode(page_title) %></h1>
