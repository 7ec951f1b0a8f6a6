SELECT t.table_schema, t.table_name
FROM information_schema.tables AS t
  LEFT JOIN information_schema.table_constraints AS c
    ON c.table_schema = t.table_schema AND c.table_name = t.table_name
    AND c.constraint_type = 'PRIMARY KEY'
WHERE t.table_type = 'BASE TABLE' AND c.constraint_name IS NULL
  AND t.table_schema NOT IN ('mysql', 'information_schema', 'performance_schema', 'sys');
