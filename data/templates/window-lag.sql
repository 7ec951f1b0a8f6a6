SELECT day, amount, amount - LAG(amount) OVER (ORDER BY day) AS difference
FROM table_name;
