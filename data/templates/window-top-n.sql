SELECT *
FROM (
  SELECT t.*, ROW_NUMBER() OVER (PARTITION BY category ORDER BY amount DESC) AS place
  FROM table_name AS t
) AS ranked
WHERE place <= 3;
