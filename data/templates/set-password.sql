ALTER USER 'name'@'%' IDENTIFIED BY 'new_password';
