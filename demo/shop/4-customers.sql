-- Names and addresses of eight people for each country. The customers are made of them by taking
-- given name, family name and address from three different rows.
CREATE TEMPORARY TABLE seeds (
    country_code CHAR(2) CHARACTER SET ascii COLLATE ascii_general_ci NOT NULL,
    row_no TINYINT NOT NULL,
    given VARCHAR(40) NOT NULL,
    family VARCHAR(40) NOT NULL,
    street VARCHAR(80) NOT NULL,
    postcode VARCHAR(12) DEFAULT NULL,
    city VARCHAR(60) NOT NULL,
    PRIMARY KEY (country_code, row_no)
);

INSERT INTO seeds VALUES
    ('DE', 0, 'Jürgen', 'Größl', 'Königsstraße 12', '20095', 'Hamburg'),
    ('DE', 1, 'Käthe', 'Müller', 'Weißdornweg 3', '04109', 'Leipzig'),
    ('DE', 2, 'Björn', 'Schäfer', 'Am Mühlbach 7a', '86150', 'Augsburg'),
    ('DE', 3, 'Änne', 'Voß', 'Große Bleiche 41', '55116', 'Mainz'),
    ('DE', 4, 'Günther', 'Jäger', 'Hölderlinplatz 1', '70193', 'Stuttgart'),
    ('DE', 5, 'Sören', 'Krüger', 'Fährhausstraße 88', '18055', 'Rostock'),
    ('DE', 6, 'Mächthild', 'Löwe', 'Schloßallee 2', '01067', 'Dresden'),
    ('DE', 7, 'Anna', 'Süß', 'Grüner Weg 19', '34117', 'Kassel'),
    ('FR', 0, 'Zoë', 'Lefèvre', '12, rue de la Forêt', '69001', 'Lyon'),
    ('FR', 1, 'François', 'Béranger', '3, place de l’Église', '33000', 'Bordeaux'),
    ('FR', 2, 'Aurélie', 'Noël', '48, allée des Chênes', '67000', 'Strasbourg'),
    ('FR', 3, 'Jérôme', 'Guérin', '7 bis, quai de l’Île', '44000', 'Nantes'),
    ('FR', 4, 'Hélène', 'd’Aubigné', '101, cours Mirabeau', '13100', 'Aix-en-Provence'),
    ('FR', 5, 'Loïc', 'Le Goëc', '5, chemin des Mûriers', '29200', 'Brest'),
    ('FR', 6, 'Maïté', 'Etchébarne', '22, rue Saint-Éloi', '64100', 'Bayonne'),
    ('FR', 7, 'Théo', 'Çelik', '9, boulevard du Maréchal', '59000', 'Lille'),
    ('CZ', 0, 'Jiří', 'Dvořáček', 'Křižíkova 15', '186 00', 'Praha'),
    ('CZ', 1, 'Zdeňka', 'Šťastná', 'Údolní 4', '602 00', 'Brno'),
    ('CZ', 2, 'Ondřej', 'Říha', 'Náměstí Míru 9', '301 00', 'Plzeň'),
    ('CZ', 3, 'Věra', 'Žáková', 'Hřbitovní 33', '702 00', 'Ostrava'),
    ('CZ', 4, 'Štěpán', 'Novotný', 'Třešňová 2', '460 01', 'Liberec'),
    ('CZ', 5, 'Kateřina', 'Čížková', 'U Vodojemu 71', '370 01', 'České Budějovice'),
    ('CZ', 6, 'Luboš', 'Hřebíček', 'Panská 6', '779 00', 'Olomouc'),
    ('CZ', 7, 'Růžena', 'Jandová', 'Smetanova 20', '530 02', 'Pardubice'),
    ('IS', 0, 'Þórður', 'Einarsson', 'Ægisgata 4', '101', 'Reykjavík'),
    ('IS', 1, 'Guðrún', 'Ásgeirsdóttir', 'Hafnarstræti 92', '600', 'Akureyri'),
    ('IS', 2, 'Björk', 'Jónsdóttir', 'Strandgata 17', '220', 'Hafnarfjörður'),
    ('IS', 3, 'Ævar', 'Sigurðsson', 'Aðalgata 1', '430', 'Suðureyri'),
    ('IS', 4, 'Sigríður', 'Þorvaldsdóttir', 'Túngata 8', '640', 'Húsavík'),
    ('IS', 5, 'Örn', 'Magnússon', 'Bárugata 11', '900', 'Vestmannaeyjar'),
    ('IS', 6, 'Ólöf', 'Hallgrímsdóttir', 'Fjarðargata 5', '400', 'Ísafjörður'),
    ('IS', 7, 'Úlfur', 'Kárason', 'Heiðarvegur 30', '700', 'Egilsstaðir'),
    ('VN', 0, 'Thị Hương', 'Nguyễn', '12 phố Hàng Bông', '100000', 'Hà Nội'),
    ('VN', 1, 'Văn Đức', 'Trần', '45 đường Lê Lợi', '700000', 'Thành phố Hồ Chí Minh'),
    ('VN', 2, 'Minh Châu', 'Lê', '8 đường Bạch Đằng', '550000', 'Đà Nẵng'),
    ('VN', 3, 'Quốc Bảo', 'Phạm', '3 đường Hùng Vương', '530000', 'Huế'),
    ('VN', 4, 'Ngọc Ánh', 'Hoàng', '77 đường Trần Phú', '650000', 'Nha Trang'),
    ('VN', 5, 'Thanh Sơn', 'Vũ', '19 đường Lạch Tray', '180000', 'Hải Phòng'),
    ('VN', 6, 'Thùy Dương', 'Đặng', '26 đường Nguyễn Trãi', '900000', 'Cần Thơ'),
    ('VN', 7, 'Hữu Phước', 'Bùi', '5 phố Cổ', '560000', 'Hội An'),
    ('BG', 0, 'Цветана', 'Ангелова', 'ул. „Шипка“ 12', '1504', 'София'),
    ('BG', 1, 'Георги', 'Щерев', 'бул. „Марица“ 4', '4000', 'Пловдив'),
    ('BG', 2, 'Юлия', 'Въжарова', 'ул. „Преслав“ 61', '9000', 'Варна'),
    ('BG', 3, 'Любомир', 'Жечев', 'ул. „Роза“ 3', '6100', 'Казанлък'),
    ('BG', 4, 'Яна', 'Чакърова', 'ул. „Дунав“ 18', '7000', 'Русе'),
    ('BG', 5, 'Ивайло', 'Петков', 'пл. „Тройката“ 1', '8000', 'Бургас'),
    ('BG', 6, 'Ралица', 'Хаджиева', 'ул. „Гурко“ 29', '5000', 'Велико Търново'),
    ('BG', 7, 'Димо', 'Янков', 'ул. „Царевец“ 7', '3000', 'Враца'),
    ('UA', 0, 'Олена', 'Ткаченко', 'вул. Хрещатик, 22', '01001', 'Київ'),
    ('UA', 1, 'Олексій', 'Шевчук', 'пл. Ринок, 14', '79008', 'Львів'),
    ('UA', 2, 'Ганна', 'Ґалаґан', 'вул. Дерибасівська, 5', '65026', 'Одеса'),
    ('UA', 3, 'Євген', 'Лисенко', 'вул. Сумська, 70', '61002', 'Харків'),
    ('UA', 4, 'Юрій', 'Мельник', 'вул. Соборна, 3', '21050', 'Вінниця'),
    ('UA', 5, 'Зоряна', 'Коваль', 'вул. Університетська, 9', '88000', 'Ужгород'),
    ('UA', 6, 'Богдан', 'Яремчук', 'вул. Незалежності, 41', '76018', 'Івано-Франківськ'),
    ('UA', 7, 'Соломія', 'Щербак', 'вул. Шевченка, 16', '36000', 'Полтава'),
    ('GR', 0, 'Νίκος', 'Παπαδάκης', 'Ερμού 25', '105 63', 'Αθήνα'),
    ('GR', 1, 'Ελένη', 'Ξενάκη', 'Αριστοτέλους 8', '546 24', 'Θεσσαλονίκη'),
    ('GR', 2, 'Γιώργος', 'Ψαλτίδης', 'Κορίνθου 130', '262 23', 'Πάτρα'),
    ('GR', 3, 'Χρυσούλα', 'Ωραιοπούλου', 'Μινωταύρου 2', '712 02', 'Ηράκλειο'),
    ('GR', 4, 'Ιάσων', 'Δημητρίου', 'Ακτή Μιαούλη 17', '185 35', 'Πειραιάς'),
    ('GR', 5, 'Φωτεινή', 'Θεοδώρου', 'Δωδώνης 44', '453 32', 'Ιωάννινα'),
    ('GR', 6, 'Σπύρος', 'Λάσκαρης', 'Λιστόν 1', '491 00', 'Κέρκυρα'),
    ('GR', 7, 'Ευφροσύνη', 'Ζαΐμη', 'Ιάσονος 60', '383 33', 'Βόλος'),
    ('CN', 0, '美玉', '林', '中山路 88 号', '361000', '厦门市'),
    ('CN', 1, '伟', '王', '南京东路 120 号', '200001', '上海市'),
    ('CN', 2, '晓燕', '李', '长安街 6 号', '100006', '北京市'),
    ('CN', 3, '建国', '张', '人民南路 33 号', '610041', '成都市'),
    ('CN', 4, '静', '欧阳', '西湖大道 19 号', '310009', '杭州市'),
    ('CN', 5, '志强', '陈', '天河路 201 号', '510620', '广州市'),
    ('CN', 6, '雪梅', '赵', '中央大街 57 号', '150010', '哈尔滨市'),
    ('CN', 7, '明', '司马', '钟楼巷 4 号', '710002', '西安市'),
    ('JP', 0, 'さくら', '高橋', '丸の内一丁目 9-1', '100-0005', '東京都千代田区'),
    ('JP', 1, '健太', '佐藤', '道頓堀 2-4-7', '542-0071', '大阪市中央区'),
    ('JP', 2, '美咲', '渡邉', '清水三丁目 15', '605-0862', '京都市東山区'),
    ('JP', 3, 'ハルト', '山﨑', '大通西 5-1', '060-0042', '札幌市中央区'),
    ('JP', 4, '葵', '小笠原', '天神 1-11', '810-0001', '福岡市中央区'),
    ('JP', 5, '大輔', '鈴木', '青葉町 3-2', '981-0922', '仙台市青葉区'),
    ('JP', 6, 'ユミコ', '齋藤', '首里金城町 1-2', '903-0815', '那覇市'),
    ('JP', 7, '翔', '中村', '元町 4-88', '231-0861', '横浜市中区'),
    ('KR', 0, '지은', '김', '세종대로 110', '04524', '서울특별시 중구'),
    ('KR', 1, '민준', '이', '해운대로 264', '48094', '부산광역시 해운대구'),
    ('KR', 2, '서연', '박', '중앙로 55', '34940', '대전광역시 중구'),
    ('KR', 3, '도윤', '최', '동성로 21', '41935', '대구광역시 중구'),
    ('KR', 4, '하은', '정', '금남로 7', '61475', '광주광역시 동구'),
    ('KR', 5, '준호', '남궁', '한옥길 12', '55042', '전주시 완산구'),
    ('KR', 6, '수빈', '윤', '첨성로 140', '38170', '경주시'),
    ('KR', 7, '예진', '황보', '노형로 3', '63097', '제주시'),
    ('EG', 0, 'ليلى', 'حسن', '١٢ شارع التحرير', '11511', 'القاهرة'),
    ('EG', 1, 'أحمد', 'عبد الله', '٥ شارع الكورنيش', '21519', 'الإسكندرية'),
    ('EG', 2, 'فاطمة', 'السيّد', '٣٣ شارع الهرم', '12511', 'الجيزة'),
    ('EG', 3, 'يوسف', 'منصور', '٧ شارع المحطة', '85951', 'الأقصر'),
    ('EG', 4, 'مريم', 'إبراهيم', '٢١ شارع السوق', '81511', 'أسوان'),
    ('EG', 5, 'عمر', 'الشريف', '٩ شارع الجيش', '31511', 'طنطا'),
    ('EG', 6, 'نور', 'خليل', '١٤ شارع فلسطين', '42511', 'بورسعيد'),
    ('EG', 7, 'كريم', 'رمضان', '٢ شارع النيل', '35511', 'المنصورة'),
    ('IL', 0, 'נועה', 'כהן', 'רחוב הרצל 14', '6688312', 'תל אביב'),
    ('IL', 1, 'איתי', 'לוי', 'שדרות בן־גוריון 3', '3502301', 'חיפה'),
    ('IL', 2, 'יעל', 'מזרחי', 'רחוב יפו 97', '9434001', 'ירושלים'),
    ('IL', 3, 'דוד', 'פרץ', 'רחוב העצמאות 22', '8447101', 'באר שבע'),
    ('IL', 4, 'תמר', 'ביטון', 'רחוב ויצמן 6', '4424701', 'כפר סבא'),
    ('IL', 5, 'משה', 'אברהם', 'רחוב הגליל 41', '1420501', 'טבריה'),
    ('IL', 6, 'שירה', 'גולן', 'רחוב הים 8', '8800101', 'אילת'),
    ('IL', 7, 'אורי', 'שפירא', 'רחוב הזית 11', '1610101', 'נצרת'),
    ('IN', 0, 'प्रिया', 'शर्मा', '१२, महात्मा गांधी मार्ग', '110001', 'नई दिल्ली'),
    ('IN', 1, 'अर्जुन', 'वर्मा', '४५, हज़रतगंज', '226001', 'लखनऊ'),
    ('IN', 2, 'लक्ष्मी', 'त्रिपाठी', '३, दशाश्वमेध घाट', '221001', 'वाराणसी'),
    ('IN', 3, 'राहुल', 'देशमुख', '८८, लक्ष्मी रोड', '411030', 'पुणे'),
    ('IN', 4, 'अंजलि', 'मिश्रा', '७, हवा महल रोड', '302002', 'जयपुर'),
    ('IN', 5, 'विक्रम', 'सिंह', '१९, झील मार्ग', '313001', 'उदयपुर'),
    ('IN', 6, 'सुनीता', 'जोशी', '२६, राजवाड़ा', '452002', 'इंदौर'),
    ('IN', 7, 'कृष्ण', 'पाण्डेय', '५, गांधी मैदान', '800001', 'पटना'),
    ('TH', 0, 'สมชาย', 'ใจดี', '99 ถนนสุขุมวิท', '10110', 'กรุงเทพมหานคร'),
    ('TH', 1, 'มาลี', 'ศรีสุข', '12 ถนนท่าแพ', '50100', 'เชียงใหม่'),
    ('TH', 2, 'ประเสริฐ', 'ทองคำ', '45 ถนนมิตรภาพ', '40000', 'ขอนแก่น'),
    ('TH', 3, 'กาญจนา', 'วงศ์สวัสดิ์', '8 ถนนราษฎร์อุทิศ', '83150', 'ภูเก็ต'),
    ('TH', 4, 'ณัฐพล', 'แก้วมณี', '3 ถนนนิพัทธ์อุทิศ', '90110', 'หาดใหญ่'),
    ('TH', 5, 'พิมพ์ใจ', 'บุญมา', '77 ถนนเจ้าพระยา', '60000', 'นครสวรรค์'),
    ('TH', 6, 'วิชัย', 'รุ่งเรือง', '21 ถนนชยางกูร', '34000', 'อุบลราชธานี'),
    ('TH', 7, 'อรทัย', 'สายทอง', '5 ถนนริมโขง', '43000', 'หนองคาย');

-- Forty customers a country: five rounds over the eight given names, each round with another
-- family name, so that no name comes twice.
INSERT INTO customers
    (name, country_code, email, phone, birthday, kind, interests, rights, credit_limit, rating,
     preferences, notes, customer_since, created_at, changed_at)
SELECT
    CASE
        WHEN c.code IN ('CN', 'KR') THEN CONCAT(f.family, g.given)
        WHEN c.family_name_first THEN CONCAT(f.family, ' ', g.given)
        ELSE CONCAT(g.given, ' ', f.family)
    END,
    c.code,
    IF(n.hash % 11 = 0, NULL, CONCAT(LOWER(c.code), LPAD(n.seq, 3, '0'), '@mail.example')),
    IF(n.hash % 3 = 0, NULL, CONCAT('+', 30 + n.hash % 60, ' ', LPAD(n.hash % 10000000, 7, '0'))),
    IF(n.hash % 7 = 0, NULL, DATE('1945-01-01') + INTERVAL (n.hash % 22000) DAY),
    ELT(1 + n.hash % 10 DIV 8 + n.hash % 20 DIV 19, 'private', 'company', 'school'),
    n.hash DIV 7 % 64,
    n.hash DIV 5 % 8,
    IF(n.hash % 4 = 0, ROUND(n.hash % 500000 / 100 + 500, 2), NULL),
    IF(n.hash % 6 = 0, NULL, ROUND(n.hash % 51 / 10, 1)),
    IF(n.hash % 5 = 0, NULL, JSON_OBJECT(
        'currency', c.currency,
        'theme', ELT(1 + n.hash % 3, 'light', 'dark', 'system'),
        'wishlist', JSON_ARRAY(1 + n.hash % 40, 1 + n.hash DIV 40 % 40))),
    CASE n.hash % 13
        WHEN 0 THEN 'Always friendly on the phone 😊'
        WHEN 1 THEN CONCAT('Moved from ', h.city, ' last year.\nOld address is gone.')
        WHEN 2 THEN 'Birthday card every year 🎂🎉'
        WHEN 3 THEN 'Pays late, but "always" pays. It''s fine; 100 % trusted \\o/'
        WHEN 4 THEN ''
    END,
    2016 + n.hash % 7,
    MAKEDATE(2016 + n.hash % 7, 1 + n.hash % 365) + INTERVAL n.hash % 86400 SECOND,
    TIMESTAMP('2025-06-01 12:00:00') + INTERVAL n.hash % 1000000000 * 1000 MICROSECOND
FROM (SELECT seq, seq - 1 AS k, CRC32(CONCAT('customer', seq)) AS hash FROM seq_1_to_600) AS n
JOIN (SELECT countries.*, ROW_NUMBER() OVER (ORDER BY code) - 1 AS nr FROM countries) AS c
    ON c.nr = n.k % 15
JOIN seeds AS g ON g.country_code = c.code AND g.row_no = n.k DIV 15 % 8
JOIN seeds AS f ON f.country_code = c.code AND f.row_no = (n.k DIV 15 + n.k DIV 120) % 8
JOIN seeds AS h ON h.country_code = c.code AND h.row_no = n.hash % 8
ORDER BY n.seq;

ALTER TABLE customers AUTO_INCREMENT = 1; -- a filling query leaves unused numbers behind

-- A third of the customers have a second address, a ninth a third one.
INSERT INTO addresses (customer_id, address_no, purpose, street, postcode, city, country_code)
SELECT c.id, n.seq, IF(n.seq = 1, 'invoice', 'delivery'), s.street,
       IF(CRC32(CONCAT(c.id, ':', n.seq)) % 17 = 0, NULL, s.postcode), s.city, c.country_code
FROM customers AS c
JOIN seq_1_to_3 AS n ON n.seq = 1 OR (n.seq = 2 AND c.id % 3 = 0) OR (n.seq = 3 AND c.id % 9 = 0)
JOIN seeds AS s ON s.country_code = c.country_code AND s.row_no = (c.id DIV 15 + n.seq) % 8;

DROP TEMPORARY TABLE seeds;
