GRANT SELECT, INSERT, UPDATE, DELETE ON database_name.* TO 'name'@'%';
