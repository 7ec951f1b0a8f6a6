INSERT IGNORE INTO table_name (id, name)
VALUES (1, 'value');
