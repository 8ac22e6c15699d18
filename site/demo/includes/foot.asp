</main>
</body>
</html>
