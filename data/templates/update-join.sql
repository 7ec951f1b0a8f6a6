UPDATE table_a AS a
  INNER JOIN table_b AS b ON b.a_id = a.id
SET a.name = b.name
WHERE a.name IS NULL;
