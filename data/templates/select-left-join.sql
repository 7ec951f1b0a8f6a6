SELECT a.*
FROM table_a AS a
  LEFT JOIN table_b AS b ON b.a_id = a.id
WHERE b.id IS NULL;
