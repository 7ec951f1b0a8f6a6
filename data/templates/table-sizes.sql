SELECT table_schema, table_name, table_rows,
  ROUND((data_length + index_length) / 1048576, 1) AS size_mib
FROM information_schema.tables
WHERE table_type = 'BASE TABLE'
ORDER BY data_length + index_length DESC
LIMIT 50;
