DELETE FROM table_name
WHERE condition
LIMIT 1000;
