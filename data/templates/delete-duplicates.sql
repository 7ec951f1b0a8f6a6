DELETE a
FROM table_name AS a
  INNER JOIN table_name AS b ON b.column_name = a.column_name AND b.id < a.id;
