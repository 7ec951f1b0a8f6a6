CHECKSUM TABLE table_name;
