SELECT category, name, amount / SUM(amount) OVER (PARTITION BY category) AS share
FROM table_name;
