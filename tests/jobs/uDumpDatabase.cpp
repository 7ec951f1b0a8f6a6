#include "uDumpDatabase.h"

#include <vector>

namespace {

const char *const Common[] = {
    "CREATE TABLE types (id INT AUTO_INCREMENT PRIMARY KEY, ti TINYINT, tu TINYINT UNSIGNED,"
    " b1 BOOL, sm SMALLINT UNSIGNED ZEROFILL, me MEDIUMINT, bi BIGINT, bu BIGINT UNSIGNED,"
    " fl FLOAT, db DOUBLE, de DECIMAL(38,10), bt BIT(7), bl BIT(64), da DATE, dt DATETIME,"
    " d6 DATETIME(6), ts TIMESTAMP(3) NULL, tm TIME, t6 TIME(6), ye YEAR, ch CHAR(10),"
    " vc VARCHAR(300) CHARACTER SET utf8mb4, la VARCHAR(20) CHARACTER SET latin1,"
    " bn BINARY(4), vb VARBINARY(20), tb TINYBLOB, bb BLOB, mb MEDIUMBLOB, lb LONGBLOB,"
    " tt TINYTEXT, tx TEXT, mt MEDIUMTEXT, lt LONGTEXT CHARACTER SET utf8mb4,"
    " en ENUM('a','b''c','d\\\\e','f`g','h\"i'), st SET('x','y','z'), js JSON, ge GEOMETRY)"
    " CHARACTER SET utf8mb4 COMMENT 'a ''comment''; with \\\\ and \\n a line'",
    "INSERT INTO types VALUES (1, -128, 255, 1, 7, -8388608, -9223372036854775808,"
    " 18446744073709551615, 0.1, 1e300, '1234567890123456789012345678.0123456789', b'1010101',"
    " x'FFFFFFFFFFFFFFFF', '2024-02-29', '2024-02-29 00:00:00', '2024-02-29 12:34:56.123456',"
    " '2024-02-29 12:34:56.789', '-838:59:59', '12:34:56.000001', 2024, 'char  ', 'Пример 東京 😀',"
    " 'caf\u00e9', x'00010203', x'00FF27', x'00', x'0a0d', '', x'DEADBEEF', 'tiny',"
    " 'line\\nbreak\\r\\ntab\\t quote\\' dq\\\" back\\\\ end\\\\', '\\0nul', _utf8mb4 "
    "x'01020b0c1a7f', 'd\\\\e',"
    " 'x,z', '{\"a\": [1, \"ü\", null]}', ST_GeomFromText('POINT(1 2)'))",
    "INSERT INTO types (id) VALUES (2)",
    "INSERT INTO types (id, fl, db, ti, sm, tm, vc, tx, en, dt, d6) VALUES (7, 16777217, 0.1, 0,"
    " 0, '00:00:00', '', '-- no comment\\n# none', 'b''c', '1969-12-31 23:59:59',"
    " '2000-01-01 00:00:00.000000')",
    "INSERT INTO types (id, fl, db, tx, mt) VALUES (8, -3.4e38, -1.7976931348623157e308,"
    " '$$;\\n;', _utf8mb4 x'00')",
    "CREATE TABLE `odd ``name` (`a b` INT NOT NULL, `c``d` VARCHAR(20) CHARACTER SET utf8mb4 NOT"
    " NULL DEFAULT 'it''s', `e.f` INT DEFAULT 5, `g;` INT NULL DEFAULT NULL,"
    " PRIMARY KEY (`a b`, `c``d`), UNIQUE KEY `u``q` (`e.f`), KEY pre (`c``d`(3), `e.f`))",
    "INSERT INTO `odd ``name` VALUES (1, 'x', 1, NULL), (1, 'y', 2, 3), (2, 'x''', 3, 4)",
    "CREATE TABLE keyed (id INT NOT NULL, a INT, b VARCHAR(20), PRIMARY KEY (id DESC),"
    " KEY down (a DESC, b(5)), UNIQUE KEY said (a) COMMENT 'it''s, \\\\ a key', KEY tree (b) USING "
    "BTREE)",
    "CREATE TABLE hashed (id INT, KEY h (id) USING HASH) ENGINE=MEMORY ROW_FORMAT=FIXED",
    "CREATE TABLE empty_one (id BIGINT UNSIGNED NOT NULL PRIMARY KEY)",
    "CREATE TABLE parent (a INT NOT NULL, b VARCHAR(10) CHARACTER SET utf8mb4 NOT NULL,"
    " up INT NULL, PRIMARY KEY (a, b), KEY up (up), UNIQUE KEY aa (a))",
    "ALTER TABLE parent ADD CONSTRAINT to_self FOREIGN KEY (up) REFERENCES parent (a)"
    " ON DELETE SET NULL ON UPDATE NO ACTION",
    "INSERT INTO parent VALUES (1, 'one', NULL), (2, 'two', 1), (3, 'three', 2)",
    "CREATE TABLE a_child (id INT PRIMARY KEY, pa INT, pb VARCHAR(10) CHARACTER SET utf8mb4,"
    " CONSTRAINT `fk ``pair` FOREIGN KEY (pa, pb) REFERENCES parent (a, b) ON DELETE CASCADE"
    " ON UPDATE CASCADE)",
    "INSERT INTO a_child VALUES (1, 1, 'one'), (2, NULL, NULL)",
    "CREATE TABLE counted (id INT AUTO_INCREMENT PRIMARY KEY, n INT DEFAULT 1,"
    " twice INT GENERATED ALWAYS AS (n * 2) STORED, plus INT GENERATED ALWAYS AS (n + 1) VIRTUAL,"
    " made TIMESTAMP DEFAULT CURRENT_TIMESTAMP ON UPDATE CURRENT_TIMESTAMP)",
    "SET sql_mode = 'NO_AUTO_VALUE_ON_ZERO'; INSERT INTO counted (id, n, made) VALUES"
    " (0, 5, '2020-01-01 00:00:00'), (9, 6, '2021-01-01 00:00:00')",
    "CREATE TABLE zero_days (id INT, d DATE NOT NULL, t DATETIME, KEY d (d))",
    "SET sql_mode = 'ALLOW_INVALID_DATES'; INSERT INTO zero_days VALUES (1, '0000-00-00', NULL),"
    " (1, '2023-00-15', '2023-02-31 10:00:00'), (1, '0000-00-00', NULL), (2, '2023-01-01', NULL)",
    // The empty value stands for a refused member, and is no member here.
    "CREATE TABLE refused (id INT, e ENUM('''a', 'x,''y'))",
    "SET sql_mode = ''; INSERT INTO refused VALUES (1, 'no member'), (2, '''a')",
    "CREATE TABLE hidden (a INT, h INT INVISIBLE DEFAULT 3, b INT)",
    "INSERT INTO hidden (a, h, b) VALUES (1, 2, 3), (4, 5, 6)",
    "CREATE TABLE log_of (what VARCHAR(100))",
    "CREATE PROCEDURE p (IN a INT, OUT b VARCHAR(20)) COMMENT 'has; one' BEGIN\n"
    "  /* a comment; with a semicolon */\n  SET b = CONCAT('x;', a);\n  SELECT ';$' AS s;\nEND",
    "CREATE FUNCTION same (a INT) RETURNS INT DETERMINISTIC RETURN a + 1",
    "CREATE PROCEDURE same () SELECT 1",
    "CREATE VIEW b_low AS SELECT a, b FROM parent WHERE a > 0 WITH CASCADED CHECK OPTION",
    "CREATE ALGORITHM=MERGE SQL SECURITY INVOKER VIEW a_high AS SELECT a, same(a) AS n FROM b_low",
    "CREATE VIEW `b``low` AS SELECT a FROM parent",
    "CREATE VIEW `a``high` AS SELECT a FROM `b``low`",
    "CREATE TRIGGER t1 BEFORE INSERT ON a_child FOR EACH ROW BEGIN\n  INSERT INTO log_of VALUES"
    " (CONCAT('in;', NEW.id));\n  SET NEW.id = NEW.id + 0;\nEND",
    "CREATE TRIGGER t2 AFTER DELETE ON a_child FOR EACH ROW INSERT INTO log_of VALUES ('out')",
    "CREATE EVENT e1 ON SCHEDULE EVERY 1 DAY STARTS '2037-01-01 00:00:00' ON COMPLETION PRESERVE"
    " DISABLE COMMENT 'ev''ent' DO DELETE FROM log_of WHERE what = ';'",
};

const std::vector<const char *> OfMariaDB = {
    "CREATE TABLE maria (u UUID PRIMARY KEY, i INET6, j JSON CHECK (json_valid(j)),"
    " d DATETIME DEFAULT current_timestamp() ON UPDATE current_timestamp(),"
    " x VARCHAR(40) DEFAULT (CONCAT('a', 'b')), KEY unused (d) IGNORED)",
    "INSERT INTO maria (u, i, j) VALUES ('123e4567-e89b-12d3-a456-426614174000', '::1', '{}')",
};

const std::vector<const char *> OfMySQL = {
    "CREATE TABLE oracle (id INT, x VARCHAR(40) DEFAULT (CONCAT('a', _utf8mb4'b')),"
    " g POINT NOT NULL SRID 4326, v VECTOR(3), KEY unused (id) INVISIBLE)",
    "INSERT INTO oracle (id, g, v) VALUES (1, ST_GeomFromText('POINT(1 2)', 4326),"
    " STRING_TO_VECTOR('[1,2,3]'))",
};

QStringList Names(const TTestServer &server, const QString &sql)
{
    QStringList names;
    for (const QStringList &row : server.Rows(sql))
        names += row.first();
    return names;
}

QString Quoted(const QString &database, QString name)
{
    return u'`' + database + "`.`" + name.replace('`', "``") + u'`';
}

QString Definition(const TTestServer &server, const QString &kind, const QString &object, int cell)
{
    QString text = server.Rows("SHOW CREATE " + kind + ' ' + object).value(0).value(cell);
    // Whether a clause repeats what holds anyway is no difference.
    return text.replace("\r\n", "\n")
        .remove(" ROW_FORMAT=DYNAMIC")
        .remove(" CHARACTER SET utf8mb4 COLLATE utf8mb4_0900_ai_ci");
}

QStringList TableRows(const TTestServer &server, const QString &database, const QString &table)
{
    QStringList cells;
    for (const QStringList &column :
         server.Rows("SELECT column_name, data_type FROM information_schema.columns WHERE"
                     " table_schema = '" +
                     database + "' AND table_name = '" + table + "' ORDER BY ordinal_position")) {
        const QString name = '`' + QString(column[0]).replace('`', "``") + '`';
        const bool isNumber = column[1] == u"double" || column[1] == u"decimal";
        cells += isNumber ? name : column[1] == u"float" ? name + " + 0e0" : "HEX(" + name + ')';
    }
    QStringList lines;
    for (const QStringList &row :
         server.Rows("SELECT " + cells.join(", ") + " FROM " + Quoted(database, table)))
        lines += table + ": " + row.join('|');
    lines.sort();
    return lines;
}

} // namespace

void DumpDatabase::Fill(const TTestDatabase &database)
{
    for (const char *sql : Common)
        database.Exec(QString::fromUtf8(sql));
    for (const char *sql : database.Server().Kind() == skMariaDB ? OfMariaDB : OfMySQL)
        database.Exec(QString::fromUtf8(sql));
}

QStringList DumpDatabase::Contents(const TTestServer &server, const QString &database)
{
    QStringList lines;
    const QString in = "' AND table_type = 'BASE TABLE' ORDER BY 1";
    for (const QString &table :
         Names(server, "SELECT table_name FROM information_schema.tables WHERE table_schema = '" +
                           database + in)) {
        lines += Definition(server, "TABLE", Quoted(database, table), 1);
        lines += TableRows(server, database, table);
    }
    for (const QStringList &row : server.Rows("SELECT table_name, view_definition, security_type,"
                                              " check_option FROM information_schema.views WHERE"
                                              " table_schema = '" +
                                              database + "' ORDER BY 1"))
        lines += row.join('|').replace(database, "@") + '|' +
                 Definition(server, "VIEW", Quoted(database, row.first()), 1).section(' ', 1, 1);
    return lines + Programs(server, database);
}

QStringList DumpDatabase::Programs(const TTestServer &server, const QString &database)
{
    const char *const queries[] = {
        "SELECT 'routine', routine_name, routine_type, dtd_identifier, routine_definition,"
        " is_deterministic, sql_data_access, security_type, routine_comment, character_set_name,"
        " collation_name FROM information_schema.routines WHERE routine_schema = '%1'",
        "SELECT 'parameter', specific_name, routine_type, ordinal_position, parameter_mode,"
        " parameter_name, dtd_identifier FROM information_schema.parameters WHERE specific_schema ="
        " '%1' AND ordinal_position > 0",
        "SELECT 'trigger', trigger_name, event_object_table, action_timing, event_manipulation,"
        " action_statement FROM information_schema.triggers WHERE trigger_schema = '%1'",
        "SELECT 'event', event_name, event_definition, interval_value, interval_field, starts,"
        " status, on_completion, event_comment FROM information_schema.events WHERE event_schema ="
        " '%1'"};
    QStringList lines;
    for (const char *query : queries)
        for (QStringList cells : server.Rows(QString(query).arg(database))) {
            for (QString &cell : cells)
                cell = cell.replace("\r\n", "\n").trimmed();
            lines += cells.join('|');
        }
    lines.sort();
    return lines;
}
