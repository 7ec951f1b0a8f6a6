CALL procedure_name('2026-01-01', @row_count);
SELECT @row_count;
