SELECT *
FROM table_a
WHERE b_id IN (SELECT id FROM table_b WHERE condition);
