TRUNCATE TABLE table_name;
