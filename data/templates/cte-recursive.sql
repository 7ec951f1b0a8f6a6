WITH RECURSIVE tree AS (
  SELECT id, parent_id, name, 0 AS depth FROM table_name WHERE parent_id IS NULL
  UNION ALL
  SELECT c.id, c.parent_id, c.name, t.depth + 1
  FROM table_name AS c
    INNER JOIN tree AS t ON c.parent_id = t.id
)
SELECT * FROM tree ORDER BY depth, name;
