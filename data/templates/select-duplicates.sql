SELECT column_name, COUNT(*) AS times
FROM table_name
GROUP BY column_name
HAVING COUNT(*) > 1
ORDER BY times DESC;
