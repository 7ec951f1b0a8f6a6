SELECT t.id, j.name, j.amount
FROM table_name AS t,
  JSON_TABLE(t.document, '$.items[*]' COLUMNS (
    name VARCHAR(100) PATH '$.name',
    amount INT PATH '$.amount'
  )) AS j;
