REVOKE INSERT, UPDATE, DELETE ON database_name.* FROM 'name'@'%';
