ALTER TABLE table_name
  CHANGE COLUMN old_name new_name VARCHAR(200) NULL;
