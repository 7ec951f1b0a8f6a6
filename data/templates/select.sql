SELECT column1, column2
FROM table_name
WHERE condition
ORDER BY column1 DESC
LIMIT 0, 100;
