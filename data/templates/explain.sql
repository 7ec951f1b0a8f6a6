EXPLAIN
SELECT * FROM table_name WHERE column_name = 'value';
