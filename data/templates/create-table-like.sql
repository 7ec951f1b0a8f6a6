CREATE TABLE new_table LIKE table_name;
