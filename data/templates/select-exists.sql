SELECT a.*
FROM table_a AS a
WHERE EXISTS (SELECT 1 FROM table_b AS b WHERE b.a_id = a.id);
