WITH totals AS (
  SELECT customer_id, SUM(amount) AS total FROM orders GROUP BY customer_id
)
SELECT c.name, t.total
FROM totals AS t
  INNER JOIN customers AS c ON c.id = t.customer_id
WHERE t.total > 1000;
