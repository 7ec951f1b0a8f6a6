DELIMITER $$

CREATE PROCEDURE walk_rows ()
BEGIN
  DECLARE done INT DEFAULT FALSE;
  DECLARE row_id INT;
  DECLARE all_rows CURSOR FOR SELECT id FROM table_name;
  DECLARE CONTINUE HANDLER FOR NOT FOUND SET done = TRUE;
  OPEN all_rows;
  read_loop: LOOP
    FETCH all_rows INTO row_id;
    IF done THEN
      LEAVE read_loop;
    END IF;
    UPDATE table_name SET seen = 1 WHERE id = row_id;
  END LOOP;
  CLOSE all_rows;
END$$

DELIMITER ;
