SELECT a.name, b.name
FROM table_a AS a
  CROSS JOIN table_b AS b;
