ALTER TABLE table_name
  ADD COLUMN column_name VARCHAR(100) NOT NULL DEFAULT '' AFTER other_column;
