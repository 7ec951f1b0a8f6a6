START TRANSACTION;
SELECT * FROM table_name WHERE id = 1 FOR UPDATE;
UPDATE table_name SET column_name = 'value' WHERE id = 1;
COMMIT;
