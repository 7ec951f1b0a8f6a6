ALTER TABLE table_name
  CONVERT TO CHARACTER SET utf8mb4 COLLATE utf8mb4_unicode_ci;
