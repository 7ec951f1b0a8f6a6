SELECT id, name FROM table_a
UNION ALL
SELECT id, name FROM table_b
ORDER BY name;
