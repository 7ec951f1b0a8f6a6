DELIMITER //

CREATE FUNCTION with_tax(amount DECIMAL(12,2), country CHAR(2) CHARACTER SET ascii)
    RETURNS DECIMAL(12,2)
    READS SQL DATA
    COMMENT 'Amount with the tax of a country, rounded to cents'
BEGIN
    DECLARE percent DECIMAL(4,1);
    SELECT vat_percent INTO percent FROM countries WHERE code = country;
    RETURN ROUND(amount * (100 + IFNULL(percent, 0)) / 100, 2);
END//

CREATE FUNCTION age_on(birthday DATE, day DATE)
    RETURNS SMALLINT
    DETERMINISTIC NO SQL
    COMMENT 'Full years; NULL when the birthday is not known'
RETURN TIMESTAMPDIFF(YEAR, birthday, day)//

CREATE PROCEDURE customer_file(IN customer INT UNSIGNED)
    READS SQL DATA
    COMMENT 'Two results: the customer with all addresses, and the orders'
BEGIN
    IF NOT EXISTS (SELECT 1 FROM customers WHERE id = customer) THEN
        SIGNAL SQLSTATE '45000' SET MESSAGE_TEXT = 'There is no such customer.';
    END IF;

    SELECT c.id, c.name, c.email, a.address_no, a.purpose, a.street, a.postcode, a.city
    FROM customers AS c
    JOIN addresses AS a ON a.customer_id = c.id
    WHERE c.id = customer
    ORDER BY a.address_no;

    SELECT id, ordered_at, state, total
    FROM orders
    WHERE customer_id = customer
    ORDER BY ordered_at DESC;
END//

CREATE PROCEDURE move_stock(IN product INT UNSIGNED, IN source TINYINT UNSIGNED,
                            IN target TINYINT UNSIGNED, INOUT pieces INT, OUT left_over INT)
    MODIFIES SQL DATA
    COMMENT 'Moves at most so many pieces as there are; tells how many were moved and are left'
BEGIN
    DECLARE EXIT HANDLER FOR SQLEXCEPTION
    BEGIN
        ROLLBACK;
        RESIGNAL;
    END;

    START TRANSACTION;
    SET left_over = (SELECT quantity FROM stock
                     WHERE warehouse_id = source AND product_id = product FOR UPDATE);
    SET pieces = GREATEST(LEAST(pieces, IFNULL(left_over, 0)), 0);
    IF pieces > 0 THEN
        UPDATE stock SET quantity = quantity - pieces
        WHERE warehouse_id = source AND product_id = product;
        INSERT INTO stock (warehouse_id, product_id, quantity) VALUES (target, product, pieces)
        ON DUPLICATE KEY UPDATE quantity = quantity + pieces;
    END IF;
    COMMIT;
    SET left_over = IFNULL(left_over, 0) - pieces;
END//

CREATE TRIGGER order_lines_after_insert AFTER INSERT ON order_lines FOR EACH ROW
    UPDATE orders SET total = total + NEW.amount WHERE id = NEW.order_id//

CREATE TRIGGER order_lines_after_update AFTER UPDATE ON order_lines FOR EACH ROW
BEGIN
    UPDATE orders SET total = total - OLD.amount WHERE id = OLD.order_id;
    UPDATE orders SET total = total + NEW.amount WHERE id = NEW.order_id;
END//

CREATE TRIGGER order_lines_after_delete AFTER DELETE ON order_lines FOR EACH ROW
    UPDATE orders SET total = total - OLD.amount WHERE id = OLD.order_id//

CREATE TRIGGER products_after_update AFTER UPDATE ON products FOR EACH ROW
BEGIN
    IF NEW.price <> OLD.price THEN
        INSERT INTO price_changes (product_id, old_price, new_price, changed_by)
        VALUES (NEW.id, OLD.price, NEW.price, USER());
    END IF;
END//

CREATE TRIGGER stock_after_update AFTER UPDATE ON stock FOR EACH ROW
BEGIN
    IF NEW.quantity <> OLD.quantity THEN
        INSERT INTO stock_moves (warehouse_id, product_id, difference)
        VALUES (NEW.warehouse_id, NEW.product_id, NEW.quantity - OLD.quantity);
    END IF;
END//

CREATE EVENT forget_old_visits
    ON SCHEDULE EVERY 1 DAY STARTS '2025-01-01 03:30:00'
    ON COMPLETION PRESERVE
    COMMENT 'Visits are kept for ten years'
    DO DELETE FROM access_log WHERE happened_at < CURRENT_DATE - INTERVAL 10 YEAR//

CREATE EVENT inventory
    ON SCHEDULE EVERY 1 YEAR STARTS '2025-01-02 06:00:00'
    ON COMPLETION PRESERVE
    DISABLE
    COMMENT 'Switched on when the counting begins'
    DO UPDATE stock SET counted_on = CURRENT_DATE//

DELIMITER ;
