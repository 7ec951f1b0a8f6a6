UPDATE table_name
SET column1 = 'value1', column2 = 'value2'
WHERE id = 1;
