DROP USER IF EXISTS 'name'@'%';
