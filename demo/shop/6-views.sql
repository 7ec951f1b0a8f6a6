CREATE VIEW order_overview AS
SELECT o.id, o.ordered_at, o.state, c.name AS customer, a.city, l.native_name AS country,
       o.total, COALESCE(p.paid, 0) AS paid
FROM orders AS o
JOIN customers AS c ON c.id = o.customer_id
JOIN addresses AS a ON a.customer_id = o.customer_id AND a.address_no = o.address_no
JOIN countries AS l ON l.code = a.country_code
LEFT JOIN (SELECT order_id, SUM(amount) AS paid FROM payments GROUP BY order_id) AS p
    ON p.order_id = o.id;

CREATE VIEW sales_by_month AS
SELECT YEAR(ordered_at) AS year, MONTH(ordered_at) AS month, COUNT(*) AS orders,
       SUM(total) AS turnover
FROM orders
WHERE state NOT IN ('cancelled', 'returned')
GROUP BY YEAR(ordered_at), MONTH(ordered_at);

CREATE SQL SECURITY INVOKER VIEW short_stock AS
SELECT p.sku, p.name, SUM(s.quantity) AS quantity, MAX(s.reorder_level) AS reorder_level
FROM products AS p
JOIN stock AS s ON s.product_id = p.id
GROUP BY p.id, p.sku, p.name
HAVING SUM(s.quantity) < MAX(s.reorder_level);

-- Can be written through: rows that leave the condition are refused.
CREATE VIEW products_on_sale AS
SELECT id, sku, category_id, name, price, state
FROM products
WHERE state = 'on sale'
WITH CASCADED CHECK OPTION;
