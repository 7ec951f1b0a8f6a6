INSERT INTO table_name (column1, column2)
SELECT column1, column2 FROM other_table WHERE condition;
