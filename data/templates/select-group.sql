SELECT category, COUNT(*) AS rows_in_group, SUM(amount) AS total
FROM table_name
GROUP BY category WITH ROLLUP
HAVING COUNT(*) > 1;
