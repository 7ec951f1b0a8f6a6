SELECT a.column1, b.column2
FROM table_a AS a
  INNER JOIN table_b AS b ON b.a_id = a.id
WHERE a.column1 = 'value';
