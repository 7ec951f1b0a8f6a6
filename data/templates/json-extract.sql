SELECT id,
  JSON_UNQUOTE(JSON_EXTRACT(document, '$.name')) AS name,
  JSON_LENGTH(document, '$.tags') AS tags
FROM table_name
WHERE JSON_VALUE(document, '$.active') = 'true';
