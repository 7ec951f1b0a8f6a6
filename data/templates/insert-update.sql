INSERT INTO table_name (id, hits)
VALUES (1, 1)
ON DUPLICATE KEY UPDATE hits = hits + 1;
