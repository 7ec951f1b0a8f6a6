SELECT product_id,
  SUM(IF(QUARTER(sold) = 1, amount, 0)) AS q1,
  SUM(IF(QUARTER(sold) = 2, amount, 0)) AS q2,
  SUM(IF(QUARTER(sold) = 3, amount, 0)) AS q3,
  SUM(IF(QUARTER(sold) = 4, amount, 0)) AS q4
FROM sales
GROUP BY product_id;
