RENAME TABLE database_name.old_name TO database_name.new_name;
