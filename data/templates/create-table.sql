CREATE TABLE table_name (
  id INT UNSIGNED NOT NULL AUTO_INCREMENT,
  parent_id INT UNSIGNED NULL,
  name VARCHAR(100) NOT NULL,
  price DECIMAL(10, 2) NOT NULL DEFAULT 0,
  created DATETIME NOT NULL DEFAULT CURRENT_TIMESTAMP,
  PRIMARY KEY (id),
  UNIQUE KEY by_name (name),
  KEY by_parent (parent_id),
  CONSTRAINT fk_table_name_parent FOREIGN KEY (parent_id) REFERENCES table_name (id)
    ON DELETE SET NULL ON UPDATE CASCADE
) ENGINE = InnoDB COMMENT = 'what it holds';
