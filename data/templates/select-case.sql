SELECT id,
  CASE
    WHEN amount < 0 THEN 'debt'
    WHEN amount = 0 THEN 'settled'
    ELSE 'credit'
  END AS state
FROM table_name;
