SET @sql = CONCAT('SELECT COUNT(*) FROM ', 'table_name');
PREPARE stmt FROM @sql;
EXECUTE stmt;
DEALLOCATE PREPARE stmt;
