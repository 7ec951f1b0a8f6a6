-- The sample database of the demo server: the files of this folder, loaded in the order of their
-- names as one script, for instance with
--   cat demo/shop/*.sql | mariadb --default-character-set=utf8mb4
-- A database `shop` that is there is replaced. All people, firms and addresses are invented, and
-- every load gives the same rows: what looks random is a CRC of the row's number.

SET NAMES utf8mb4;
SET time_zone = '+00:00';

DROP DATABASE IF EXISTS shop;
CREATE DATABASE shop
    CHARACTER SET utf8mb4 COLLATE utf8mb4_unicode_ci
    COMMENT 'Sample data of a small mail-order shop';
USE shop;

CREATE TABLE countries (
    code CHAR(2) CHARACTER SET ascii COLLATE ascii_general_ci NOT NULL COMMENT 'ISO 3166 code',
    name VARCHAR(60) NOT NULL COMMENT 'In English',
    native_name VARCHAR(60) NOT NULL COMMENT 'In the script of the country',
    currency CHAR(3) CHARACTER SET ascii NOT NULL COMMENT 'ISO 4217 code',
    vat_percent DECIMAL(4,1) DEFAULT NULL COMMENT 'NULL: sold without tax',
    family_name_first BOOLEAN NOT NULL DEFAULT FALSE,
    PRIMARY KEY (code)
) ENGINE=InnoDB COMMENT='Where we deliver to';

CREATE TABLE customers (
    id INT UNSIGNED NOT NULL AUTO_INCREMENT,
    name VARCHAR(120) NOT NULL COMMENT 'Full name, in the order its bearer writes it',
    country_code CHAR(2) CHARACTER SET ascii COLLATE ascii_general_ci NOT NULL,
    email VARCHAR(120) CHARACTER SET ascii DEFAULT NULL COMMENT 'NULL: orders by letter',
    phone VARCHAR(30) DEFAULT NULL,
    birthday DATE DEFAULT NULL,
    kind ENUM('private','company','school') NOT NULL DEFAULT 'private',
    interests SET('tea','music','garden','books','games','travel') NOT NULL DEFAULT '',
    rights BIT(8) NOT NULL DEFAULT b'0' COMMENT '1: newsletter, 2: buys on account, 4: reseller',
    credit_limit DECIMAL(12,2) DEFAULT NULL COMMENT 'NULL: no credit',
    rating FLOAT DEFAULT NULL COMMENT '0 to 5, mean of the customer''s reviews',
    preferences JSON DEFAULT NULL,
    notes TEXT DEFAULT NULL COMMENT 'What the service desk wrote down',
    customer_since YEAR NOT NULL,
    created_at DATETIME NOT NULL DEFAULT CURRENT_TIMESTAMP,
    changed_at TIMESTAMP(3) NOT NULL DEFAULT CURRENT_TIMESTAMP(3)
        ON UPDATE CURRENT_TIMESTAMP(3),
    PRIMARY KEY (id),
    UNIQUE KEY uk_customers_email (email),
    KEY ix_customers_name (name(40)),
    CONSTRAINT fk_customers_country FOREIGN KEY (country_code) REFERENCES countries (code)
        ON UPDATE CASCADE,
    CONSTRAINT ck_customers_rating CHECK (rating BETWEEN 0 AND 5)
) ENGINE=InnoDB COMMENT='Everybody who ever ordered';

CREATE TABLE addresses (
    customer_id INT UNSIGNED NOT NULL,
    address_no TINYINT UNSIGNED NOT NULL COMMENT 'Counted from 1 for each customer',
    purpose ENUM('invoice','delivery') NOT NULL DEFAULT 'invoice',
    street VARCHAR(120) NOT NULL,
    postcode VARCHAR(12) DEFAULT NULL,
    city VARCHAR(80) NOT NULL,
    country_code CHAR(2) CHARACTER SET ascii COLLATE ascii_general_ci NOT NULL,
    PRIMARY KEY (customer_id, address_no),
    KEY ix_addresses_city (city),
    CONSTRAINT fk_addresses_customer FOREIGN KEY (customer_id) REFERENCES customers (id)
        ON DELETE CASCADE,
    CONSTRAINT fk_addresses_country FOREIGN KEY (country_code) REFERENCES countries (code)
        ON UPDATE CASCADE
) ENGINE=InnoDB COMMENT='One to three addresses of each customer';

CREATE TABLE categories (
    id SMALLINT UNSIGNED NOT NULL AUTO_INCREMENT,
    parent_id SMALLINT UNSIGNED DEFAULT NULL COMMENT 'NULL: a department',
    name VARCHAR(60) NOT NULL,
    position TINYINT NOT NULL DEFAULT 0 COMMENT 'Order in the shop window',
    PRIMARY KEY (id),
    UNIQUE KEY uk_categories_name (name),
    CONSTRAINT fk_categories_parent FOREIGN KEY (parent_id) REFERENCES categories (id)
        ON DELETE SET NULL
) ENGINE=InnoDB COMMENT='Departments and their shelves';

CREATE TABLE suppliers (
    id SMALLINT UNSIGNED NOT NULL AUTO_INCREMENT,
    name VARCHAR(100) NOT NULL,
    country_code CHAR(2) CHARACTER SET ascii COLLATE ascii_general_ci NOT NULL,
    contact VARCHAR(100) DEFAULT NULL,
    website VARCHAR(120) CHARACTER SET ascii DEFAULT NULL,
    delivery_days TINYINT UNSIGNED DEFAULT NULL COMMENT 'NULL: not agreed',
    founded YEAR DEFAULT NULL,
    terms JSON DEFAULT NULL COMMENT 'What the contract says',
    PRIMARY KEY (id),
    UNIQUE KEY uk_suppliers_name (name),
    CONSTRAINT fk_suppliers_country FOREIGN KEY (country_code) REFERENCES countries (code)
        ON UPDATE CASCADE
) ENGINE=InnoDB COMMENT='Whom we buy from';

CREATE TABLE products (
    id INT UNSIGNED NOT NULL AUTO_INCREMENT,
    sku CHAR(7) CHARACTER SET ascii COLLATE ascii_bin NOT NULL COMMENT 'Article number',
    category_id SMALLINT UNSIGNED NOT NULL,
    supplier_id SMALLINT UNSIGNED DEFAULT NULL COMMENT 'NULL: made in our own workshop',
    name VARCHAR(100) NOT NULL,
    description TEXT DEFAULT NULL,
    price DECIMAL(10,2) NOT NULL COMMENT 'Euro, without tax',
    price_with_tax DECIMAL(10,2) GENERATED ALWAYS AS (ROUND(price * 1.19, 2)) VIRTUAL,
    weight_kg DOUBLE DEFAULT NULL,
    state ENUM('planned','on sale','sold out','withdrawn') NOT NULL DEFAULT 'on sale',
    labels SET('new','organic','fragile','handmade','gift') NOT NULL DEFAULT '',
    attributes JSON DEFAULT NULL,
    on_sale_since DATE DEFAULT NULL,
    packing_time TIME NOT NULL DEFAULT '00:02:00',
    picture BLOB DEFAULT NULL COMMENT 'PNG, GIF or JPEG',
    PRIMARY KEY (id),
    UNIQUE KEY uk_products_sku (sku),
    FULLTEXT KEY ft_products_text (name, description),
    CONSTRAINT fk_products_category FOREIGN KEY (category_id) REFERENCES categories (id),
    CONSTRAINT fk_products_supplier FOREIGN KEY (supplier_id) REFERENCES suppliers (id)
        ON DELETE SET NULL,
    CONSTRAINT ck_products_price CHECK (price >= 0)
) ENGINE=InnoDB COMMENT='The catalogue';

CREATE TABLE price_changes (
    id INT UNSIGNED NOT NULL AUTO_INCREMENT,
    product_id INT UNSIGNED NOT NULL,
    old_price DECIMAL(10,2) NOT NULL,
    new_price DECIMAL(10,2) NOT NULL,
    changed_by VARCHAR(128) NOT NULL COMMENT 'Account of the session',
    changed_at TIMESTAMP NOT NULL DEFAULT CURRENT_TIMESTAMP,
    PRIMARY KEY (id),
    CONSTRAINT fk_price_changes_product FOREIGN KEY (product_id) REFERENCES products (id)
        ON DELETE CASCADE
) ENGINE=InnoDB COMMENT='Written by a trigger of products';

CREATE TABLE warehouses (
    id TINYINT UNSIGNED NOT NULL AUTO_INCREMENT,
    name VARCHAR(60) NOT NULL,
    location POINT NOT NULL COMMENT 'Longitude and latitude',
    opens_at TIME NOT NULL,
    closes_at TIME NOT NULL,
    heated BIT(1) NOT NULL DEFAULT b'1',
    PRIMARY KEY (id),
    SPATIAL KEY sp_warehouses_location (location)
) ENGINE=InnoDB COMMENT='Where the goods lie';

CREATE TABLE stock (
    warehouse_id TINYINT UNSIGNED NOT NULL,
    product_id INT UNSIGNED NOT NULL,
    quantity INT NOT NULL DEFAULT 0,
    reorder_level INT DEFAULT NULL COMMENT 'NULL: never ordered again',
    shelf VARCHAR(10) DEFAULT NULL,
    counted_on DATE DEFAULT NULL,
    PRIMARY KEY (warehouse_id, product_id),
    CONSTRAINT fk_stock_warehouse FOREIGN KEY (warehouse_id) REFERENCES warehouses (id),
    CONSTRAINT fk_stock_product FOREIGN KEY (product_id) REFERENCES products (id)
        ON DELETE CASCADE,
    CONSTRAINT ck_stock_quantity CHECK (quantity >= 0)
) ENGINE=InnoDB COMMENT='How much of what lies where';

CREATE TABLE stock_moves (
    id BIGINT UNSIGNED NOT NULL AUTO_INCREMENT,
    warehouse_id TINYINT UNSIGNED NOT NULL,
    product_id INT UNSIGNED NOT NULL,
    difference INT NOT NULL,
    moved_at DATETIME(6) NOT NULL DEFAULT CURRENT_TIMESTAMP(6),
    PRIMARY KEY (id),
    CONSTRAINT fk_stock_moves_stock FOREIGN KEY (warehouse_id, product_id)
        REFERENCES stock (warehouse_id, product_id) ON DELETE CASCADE
) ENGINE=InnoDB COMMENT='Written by a trigger of stock';

CREATE TABLE orders (
    id INT UNSIGNED NOT NULL AUTO_INCREMENT,
    customer_id INT UNSIGNED NOT NULL,
    address_no TINYINT UNSIGNED NOT NULL DEFAULT 1 COMMENT 'Where it goes',
    ordered_at DATETIME NOT NULL,
    state ENUM('new','packed','sent','delivered','returned','cancelled') NOT NULL DEFAULT 'new',
    sent_on DATE DEFAULT NULL,
    total DECIMAL(12,2) NOT NULL DEFAULT 0 COMMENT 'Kept by the triggers of order_lines',
    wish VARCHAR(200) DEFAULT NULL COMMENT 'Written by the customer',
    PRIMARY KEY (id),
    KEY ix_orders_ordered_at (ordered_at),
    KEY ix_orders_state (state, ordered_at),
    CONSTRAINT fk_orders_address FOREIGN KEY (customer_id, address_no)
        REFERENCES addresses (customer_id, address_no)
) ENGINE=InnoDB COMMENT='Three years of orders';

CREATE TABLE order_lines (
    order_id INT UNSIGNED NOT NULL,
    line_no TINYINT UNSIGNED NOT NULL,
    product_id INT UNSIGNED NOT NULL,
    quantity SMALLINT UNSIGNED NOT NULL,
    unit_price DECIMAL(10,2) NOT NULL COMMENT 'Price on the day of the order',
    discount_percent DECIMAL(4,1) DEFAULT NULL,
    amount DECIMAL(12,2) GENERATED ALWAYS AS
        (ROUND(quantity * unit_price * (100 - IFNULL(discount_percent, 0)) / 100, 2)) STORED,
    PRIMARY KEY (order_id, line_no),
    CONSTRAINT fk_order_lines_order FOREIGN KEY (order_id) REFERENCES orders (id)
        ON DELETE CASCADE,
    CONSTRAINT fk_order_lines_product FOREIGN KEY (product_id) REFERENCES products (id),
    CONSTRAINT ck_order_lines_quantity CHECK (quantity > 0)
) ENGINE=InnoDB COMMENT='One to four lines for each order';

CREATE TABLE payments (
    id BIGINT UNSIGNED NOT NULL AUTO_INCREMENT,
    order_id INT UNSIGNED NOT NULL,
    method ENUM('card','transfer','invoice','voucher') NOT NULL,
    amount DECIMAL(12,2) NOT NULL COMMENT 'Negative: paid back',
    paid_at DATETIME(6) NOT NULL,
    receipt BINARY(16) NOT NULL COMMENT 'Digest given by the bank',
    details JSON DEFAULT NULL,
    PRIMARY KEY (id),
    UNIQUE KEY uk_payments_receipt (receipt),
    CONSTRAINT fk_payments_order FOREIGN KEY (order_id) REFERENCES orders (id)
) ENGINE=InnoDB COMMENT='What came in and what went back';

CREATE TABLE access_log (
    id BIGINT UNSIGNED NOT NULL AUTO_INCREMENT,
    happened_at DATETIME(6) NOT NULL,
    session UUID NOT NULL,
    client INET6 NOT NULL COMMENT 'IPv4 addresses are mapped',
    customer_id INT UNSIGNED DEFAULT NULL COMMENT 'NULL: not logged in',
    path VARCHAR(200) NOT NULL,
    answer SMALLINT UNSIGNED NOT NULL COMMENT 'HTTP status',
    took TIME(3) NOT NULL,
    PRIMARY KEY (id, happened_at),
    KEY ix_access_log_session (session)
) ENGINE=InnoDB COMMENT='Visits of the web shop'
PARTITION BY RANGE (YEAR(happened_at)) (
    PARTITION y2023 VALUES LESS THAN (2024),
    PARTITION y2024 VALUES LESS THAN (2025),
    PARTITION later VALUES LESS THAN MAXVALUE
);

CREATE TABLE old_price_list (
    article VARCHAR(60) NOT NULL,
    price_marks DECIMAL(8,2) NOT NULL COMMENT 'Deutsche Mark',
    printed_in YEAR NOT NULL
) ENGINE=MyISAM DEFAULT CHARSET=latin1 COMMENT='Typed in from paper; no key, Latin-1';
