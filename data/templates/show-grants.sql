SHOW GRANTS FOR 'name'@'%';
