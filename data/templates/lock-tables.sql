LOCK TABLES table_name WRITE;
-- statements
UNLOCK TABLES;
