ALTER TABLE table_name
  ADD KEY by_name (name),
  ADD UNIQUE KEY by_code (code);
