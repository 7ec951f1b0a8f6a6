-- 12,000 orders from 2023 to 2025, three sevenths of them in the two months before Christmas, when
-- a shop of this kind sells most.
INSERT INTO orders (customer_id, address_no, ordered_at, state, sent_on, wish)
SELECT c.id,
       1 + IF(c.id % 3 = 0, n.hash DIV 3 % IF(c.id % 9 = 0, 3, 2), 0),
       n.ordered_at,
       n.state,
       IF(n.state IN ('sent', 'delivered', 'returned'),
          DATE(n.ordered_at) + INTERVAL 1 + n.hash % 4 DAY, NULL),
       CASE n.hash % 29
           WHEN 0 THEN 'Please ring twice 🔔'
           WHEN 1 THEN 'Bitte beim Nachbarn abgeben – Grüße!'
           WHEN 2 THEN '请送到门卫处，谢谢'
           WHEN 3 THEN 'Με συσκευασία δώρου παρακαλώ 🎁'
           WHEN 4 THEN 'من فضلك اتصل قبل التوصيل'
           WHEN 5 THEN 'ギフト包装をお願いします'
           WHEN 6 THEN 'Залишити на пошті'
       END
FROM (
    SELECT seq, hash, ordered_at,
           CASE
               WHEN hash % 31 = 0 THEN 'cancelled'
               WHEN hash % 37 = 0 THEN 'returned'
               WHEN ordered_at >= '2025-12-29' THEN 'new'
               WHEN ordered_at >= '2025-12-27' THEN 'packed'
               WHEN ordered_at >= '2025-12-20' THEN 'sent'
               ELSE 'delivered'
           END AS state
    FROM (
        SELECT seq, hash,
               CONCAT(ELT(1 + CRC32(CONCAT('year', seq)) % 10, 2023, 2023, 2023, 2024, 2024, 2024,
                          2025, 2025, 2025, 2025), '-01-01') +
                   INTERVAL IF(hash % 7 < 3, 304 + hash DIV 7 % 61, hash DIV 7 % 365) DAY +
                   INTERVAL (6 * 3600 + hash DIV 11 % 61200) SECOND AS ordered_at
        FROM (SELECT seq, CRC32(CONCAT('order', seq)) AS hash FROM seq_1_to_12000) AS numbers
    ) AS dated
) AS n
JOIN customers AS c ON c.id = 1 + n.hash DIV 13 % 600
ORDER BY n.ordered_at, n.seq;

-- One to four lines for an order. Prices were a little lower in the years before.
INSERT INTO order_lines (order_id, line_no, product_id, quantity, unit_price, discount_percent)
SELECT l.order_id, l.line_no, p.id,
       1 + IF(l.hash % 5 = 0, l.hash DIV 5 % 6, 0),
       ROUND(p.price * (1 - (2025 - YEAR(l.ordered_at)) * 0.03), 2),
       IF(l.hash % 9 = 0, ELT(1 + l.hash DIV 9 % 3, 5.0, 10.0, 12.5), NULL)
FROM (
    SELECT o.id AS order_id, n.seq AS line_no, o.ordered_at,
           CRC32(CONCAT('line', o.id, '/', n.seq)) AS hash
    FROM orders AS o
    JOIN seq_1_to_4 AS n ON n.seq <= 1 + CRC32(CONCAT('lines', o.id)) % 4
) AS l
JOIN products AS p ON p.id = 1 + l.hash DIV 17 % 37;

UPDATE orders AS o
JOIN (SELECT order_id, SUM(amount) AS total FROM order_lines GROUP BY order_id) AS l
    ON l.order_id = o.id
SET o.total = l.total;

-- Everything sent is paid, what came back is paid back.
INSERT INTO payments (order_id, method, amount, paid_at, receipt, details)
SELECT o.id, n.method, o.total * n.sign,
       o.ordered_at + INTERVAL (n.step * 12 * 86400 + n.hash % 86400) SECOND
           + INTERVAL n.hash % 1000000 MICROSECOND,
       UNHEX(MD5(CONCAT('receipt', o.id, '/', n.step))),
       CASE n.method
           WHEN 'card' THEN JSON_OBJECT('issuer', ELT(1 + n.hash % 3, 'Nord', 'Süd', 'West'),
                                        'last_digits', LPAD(n.hash % 10000, 4, '0'))
           WHEN 'transfer' THEN JSON_OBJECT('purpose', CONCAT('Order ', o.id))
       END
FROM orders AS o
JOIN (
    SELECT id, 0 AS step, 1 AS sign, CRC32(CONCAT('payment', id)) AS hash,
           ELT(1 + CRC32(CONCAT('payment', id)) % 7, 'card', 'card', 'card', 'transfer',
               'transfer', 'invoice', 'voucher') AS method
    FROM orders WHERE state NOT IN ('new', 'packed', 'cancelled')
    UNION ALL
    SELECT id, 1, -1, CRC32(CONCAT('refund', id)), 'transfer'
    FROM orders WHERE state = 'returned'
) AS n ON n.id = o.id
ORDER BY o.ordered_at, n.step;

INSERT INTO access_log (happened_at, session, client, customer_id, path, answer, took)
SELECT TIMESTAMP('2023-01-01') + INTERVAL seq * 18900 SECOND + INTERVAL hash % 1000000 MICROSECOND,
       -- A version 4 identifier: the server refuses digits that belong to no version.
       CONCAT(LEFT(digest, 12), '4', MID(digest, 14, 3), '8', RIGHT(digest, 15)),
       IF(visitor % 3 = 0, CONCAT('::ffff:192.0.2.', visitor % 254),
          CONCAT('2001:db8:', HEX(visitor % 4096), '::', HEX(visitor % 65536))),
       IF(visitor % 2 = 0, 1 + visitor DIV 2 % 600, NULL),
       ELT(1 + hash % 6, '/', '/tea', '/search?q=чай', '/product/茶碗', '/basket',
           '/product/caf%C3%A9'),
       ELT(1 + hash % 23 DIV 20 + hash % 97 DIV 96, 200, 404, 500),
       SEC_TO_TIME(hash % 2500 / 1000)
FROM (
    SELECT seq, CRC32(CONCAT('access', seq)) AS hash,
           CRC32(CONCAT('visitor', seq DIV 4)) AS visitor,
           MD5(CONCAT('session', seq DIV 4)) AS digest
    FROM seq_1_to_5000
) AS n;

-- Filling a table from a query leaves a gap of unused numbers behind.
ALTER TABLE orders AUTO_INCREMENT = 1;
ALTER TABLE payments AUTO_INCREMENT = 1;
ALTER TABLE access_log AUTO_INCREMENT = 1;
