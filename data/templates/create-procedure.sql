DELIMITER $$

CREATE PROCEDURE procedure_name (IN from_day DATE, OUT row_count INT)
BEGIN
  SELECT COUNT(*) INTO row_count FROM table_name WHERE day >= from_day;
END$$

DELIMITER ;
