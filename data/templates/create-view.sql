CREATE OR REPLACE VIEW view_name AS
SELECT id, name FROM table_name WHERE condition
WITH CHECK OPTION;
