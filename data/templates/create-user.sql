CREATE USER 'name'@'%' IDENTIFIED BY 'password';
