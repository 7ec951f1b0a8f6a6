SELECT day, amount,
  SUM(amount) OVER (ORDER BY day ROWS UNBOUNDED PRECEDING) AS total
FROM table_name;
