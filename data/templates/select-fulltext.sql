SELECT *, MATCH (title, body) AGAINST ('words' IN BOOLEAN MODE) AS score
FROM table_name
WHERE MATCH (title, body) AGAINST ('words' IN BOOLEAN MODE)
ORDER BY score DESC;
