ANALYZE TABLE table_name;
