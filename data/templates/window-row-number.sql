SELECT category, name,
  ROW_NUMBER() OVER (PARTITION BY category ORDER BY name) AS number
FROM table_name;
