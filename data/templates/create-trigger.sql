DELIMITER $$

CREATE TRIGGER trigger_name AFTER UPDATE ON table_name
FOR EACH ROW
BEGIN
  INSERT INTO changes (row_id, old_name, new_name, changed)
  VALUES (OLD.id, OLD.name, NEW.name, NOW());
END$$

DELIMITER ;
