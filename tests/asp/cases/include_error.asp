<p>not written</p>
<!-- #include file="inc/cycle.inc" -->
