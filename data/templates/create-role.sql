CREATE ROLE role_name;
GRANT SELECT ON database_name.* TO role_name;
GRANT role_name TO 'name'@'%';
