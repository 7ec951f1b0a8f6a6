CREATE TABLE new_table AS
SELECT * FROM table_name WHERE condition;
