UPDATE table_name
SET document = JSON_SET(document, '$.name', 'value', '$.changed', NOW())
WHERE id = 1;
