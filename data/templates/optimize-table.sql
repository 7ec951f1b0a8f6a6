OPTIMIZE TABLE table_name;
