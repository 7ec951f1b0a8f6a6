#include "uModelFixture.h"

namespace {

class TTableModelTest : public TModelTest
{
protected:
    void UpdateField(const QString &table, const QString &name, const QString &newName,
                     const std::function<void(TDbmFieldEntity &)> &edit = {})
    {
        TDbmTableItem &item = Table(table);
        item.Fields().RequestProcess();
        TDbmFieldEntity entity = Named(item.Fields(), name).Entity();
        if (edit)
            edit(entity);
        Manager->Commands().Fields().ExecuteUpdate(Name(), table, entity, {}, newName,
                                                   item.Entity().Collation);
    }
};

const QString CommonColumns = R"(
  `id` int unsigned NOT NULL AUTO_INCREMENT,
  `tiny` tinyint(1) NOT NULL DEFAULT 1, `tu` tinyint unsigned DEFAULT 7,
  `tiny unsigned` tinyint(1) unsigned DEFAULT 1, `mid` datetime DEFAULT '2001-02-03 00:00:00',
  `big` bigint unsigned DEFAULT 18446744073709551615, `z` int(8) unsigned zerofill DEFAULT 5,
  `f` float DEFAULT 1.5, `d` double(10,2) NOT NULL DEFAULT 0.10, `n` decimal(30,10) DEFAULT
  12345678901234567890.1234567891, `bits` bit(8) NOT NULL DEFAULT b'101', `y` year DEFAULT 2001,
  `dt` datetime(6) DEFAULT '2001-02-03 04:05:06.789012', `day` date DEFAULT '1000-01-01',
  `t` time(3) DEFAULT '-100:00:00.500', `now` datetime(6) NOT NULL DEFAULT CURRENT_TIMESTAMP(6)
  ON UPDATE CURRENT_TIMESTAMP(6), `ts` timestamp NOT NULL DEFAULT CURRENT_TIMESTAMP,
  `text null` varchar(20) DEFAULT 'NULL', `quote` varchar(20) NOT NULL DEFAULT 'it''s \\ "x"'
  COMMENT 'a ''b'' \\ c\r\n  d', `empty` char(3) NOT NULL DEFAULT '', `bin` varchar(9) COLLATE
  utf8mb4_bin DEFAULT NULL, `latin` varchar(9) CHARACTER SET latin1 DEFAULT 'x',
  `en` enum('a','b c','','d''e','unsigned','x\\y') DEFAULT 'b c', `se` set('x','y') NOT NULL DEFAULT 'x',
  `vb` varbinary(9) DEFAULT 'abc', `blob` longblob, `txt` mediumtext NOT NULL,
  `geo` point DEFAULT NULL, `js` json DEFAULT NULL,
  `expr` varchar(40) DEFAULT (concat('a','''',1)),
  `gen` int GENERATED ALWAYS AS (`tu` * 2) VIRTUAL, `gs` varchar(9) GENERATED ALWAYS AS
  (concat(`en`, '(')) STORED,)";

TEST_P(TTableModelTest, AnUneditedColumnGoesBackAsItWas)
{
    const QString own = IsMySQL() ? "`hid` int DEFAULT 1 INVISIBLE, `v` vector(3) DEFAULT NULL,"
                                    "`sr` point NOT NULL SRID 4326, `b9` varchar(9) COLLATE"
                                    " utf8mb4_0900_bin,"
                                  : "`hid` int INVISIBLE DEFAULT 1, `u` uuid DEFAULT uuid(),"
                                    "`i6` inet6 DEFAULT '::1', `i4` inet4 DEFAULT NULL,"
                                    "`chk` int DEFAULT 3 COMMENT 'x CHECK (y)'"
                                    " CHECK (`chk` > 1 and `chk` <> 7),"
                                    "`zero` datetime NOT NULL DEFAULT '0000-00-00 00:00:00',"
                                    "`np` varchar(9) COLLATE utf8mb4_nopad_bin,"
                                    "`gp` int GENERATED ALWAYS AS (1 + 1) STORED,";
    Exec("CREATE TABLE `t` (" + CommonColumns + own +
         "PRIMARY KEY (`id`)) ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_general_ci");
    const QString before = TableText("t");
    QStringList names;
    Table("t").Fields().ForEach(
        [&](TDbmFieldItem &field) { names.append(field.Entity().FieldName); });
    EXPECT_GT(names.size(), 30);
    for (const QString &name : names)
        ASSERT_NO_THROW(UpdateField("t", name, name)) << name.toStdString();
    EXPECT_EQ(TableText("t"), before);
    for (const QString &name : IsMySQL() ? QStringList{"dt", "b9"} : QStringList{"chk", "js"}) {
        UpdateField("t", name, "new one");
        EXPECT_TRUE(TableText("t").contains("`new one`")) << name.toStdString();
        UpdateField("t", "new one", name);
        EXPECT_EQ(TableText("t"), before);
    }
}

TEST_P(TTableModelTest, MembersStayAsTheyAreWhileOthersChange)
{
    Exec("CREATE TABLE t (id int PRIMARY KEY, e enum('z','a''b','b\\\\c','','  x y'),"
         " s set('o''o','p\\\\q','  r')) COLLATE utf8mb4_general_ci");
    Exec("INSERT INTO t VALUES (1,'a''b','o''o'),(2,'b\\\\c','p\\\\q'),(3,'','  r'),"
         "(4,'  x y','o''o,  r')");
    const auto rows = [&] {
        return Value("SELECT GROUP_CONCAT(e, '|', s ORDER BY id SEPARATOR '/') FROM t");
    };
    const auto members = [&](const QString &name) {
        return Value("SELECT column_type FROM information_schema.columns WHERE table_schema ="
                     " DATABASE() AND column_name = '" +
                     name + '\'');
    };
    const QString stored = rows(), enumText = members("e"), setText = members("s");
    EXPECT_EQ(stored, "a'b|o'o/b\\c|p\\q/|  r/  x y|o'o,  r");
    for (const char *name : {"e", "s"}) {
        UpdateField("t", name, name, [](TDbmFieldEntity &field) {
            field.FieldType.Values.removeOne("z");
            field.FieldType.Values += "new''one";
        });
        UpdateField("t", name, name, [](TDbmFieldEntity &field) {
            field.FieldType.Collation = "utf8mb4_bin";
            field.FieldType.Binary = true;
        });
        EXPECT_EQ(Value(QString("SELECT COLLATION(%1) FROM t LIMIT 1").arg(name)), "utf8mb4_bin");
    }
    EXPECT_EQ(rows(), stored);
    EXPECT_EQ(members("e"), QString(enumText).remove("'z',").replace("')", "','new''one')"));
    EXPECT_EQ(members("s"), QString(setText).replace("')", "','new''one')"));
}

TEST_P(TTableModelTest, AnEditedColumnIsWrittenByTheModel)
{
    Exec("CREATE TABLE t (id int PRIMARY KEY, b bit(8) DEFAULT b'11', c varchar(10) NOT NULL)");
    UpdateField("t", "b", "b", [](TDbmFieldEntity &field) {
        field.FieldType.DataType = fdtBigint;
        field.FieldType.Length = 0;
        field.DefaultValue.Value = 4;
        field.Comment = "it's `new`\n";
    });
    EXPECT_EQ(Value("SELECT CONCAT(data_type, column_default, column_comment) FROM "
                    "information_schema.columns WHERE table_schema = DATABASE() AND "
                    "column_name = 'b'"),
              "bigint4it's `new` "); // typed line breaks fold
    TDbmFieldEntity added;
    added.FieldName = "fresh one";
    added.FieldType.DataType = fdtEnum;
    added.FieldType.Values = {"a", "b''c"}; // as servers spell them
    added.DefaultValue.Value = "b'c";
    Manager->Commands().Fields().ExecuteCreate(Name(), "t", added, {fptAfter, "id"}, {});
    EXPECT_EQ(Value("SELECT CONCAT(ordinal_position, column_default) FROM "
                    "information_schema.columns WHERE table_schema = DATABASE() AND "
                    "column_name = 'fresh one'")
                  .remove('\'')
                  .remove('\\'),
              "2bc");
    Manager->Commands().Fields().ExecuteDelete(Name(), "t", "c");
    EXPECT_EQ(FDatabase->Rows("SHOW COLUMNS FROM t").size(), 3);
}

TEST_P(TTableModelTest, ColumnsShowTypesAndKeys)
{
    Exec("CREATE TABLE p (a int, b varchar(20), PRIMARY KEY (a), KEY kb (b(5)))");
    Exec("CREATE TABLE c (id int unsigned NOT NULL AUTO_INCREMENT, pa int, d decimal(8,2),"
         " e enum('x','y'), u varchar(9) COLLATE utf8mb4_bin, plain text, PRIMARY KEY (id),"
         " UNIQUE KEY uq (d), KEY k (pa), CONSTRAINT `fk1` FOREIGN KEY (pa) REFERENCES p (a)"
         " ON DELETE CASCADE ON UPDATE SET NULL) DEFAULT CHARSET=utf8mb4");
    TDbmFieldList &fields = Table("c").Fields();
    const auto shown = [&](const char *name) {
        TDbmFieldItem &field = Named(fields, name);
        return field.GetTypeDisplayString() + " | " + field.GetKeyDisplayString();
    };
    EXPECT_EQ(shown("id"),
              IsMySQL() ? "int unsigned (+) | primary" : "int(10) unsigned (+) | primary");
    EXPECT_EQ(shown("d"), "decimal(8, 2) | unique");
    EXPECT_EQ(shown("e"), "enum(x, y) | ");
    EXPECT_EQ(shown("u"), "varchar(9) utf8mb4_bin binary | ");
    TDbmFieldItem &pa = Named(fields, "pa");
    EXPECT_EQ(pa.GetKeyDisplayString(), "index");
    EXPECT_EQ(pa.GetReferenceDisplayString(), "p.a");
    EXPECT_EQ(pa.GetReferenceOnDeleteDisplayString(), "cascade");
    EXPECT_EQ(pa.GetReferenceOnUpdateDisplayString(), "set null");

    ASSERT_EQ(Table("p").Dependencies().Count(), 1);
    const auto dependency = Table("p").Dependencies().ToArray().first();
    EXPECT_EQ(dependency->GetReferenceSourceDisplayString(), "c(pa)");
    EXPECT_EQ(dependency->GetReferenceOnDeleteDiplsayString(), "cascade");
}

TEST_P(TTableModelTest, KeysAreWholeOrAbsentWhereRowsAreWritten)
{
    Exec("CREATE TABLE `odd name` (`a b` int, `c-d` varchar(9), PRIMARY KEY (`a b`, `c-d`))");
    Exec("CREATE TABLE prefixed (a varchar(20), PRIMARY KEY (a(5)))");
    Exec("CREATE TABLE keyless (a int UNIQUE)");
    Exec("CREATE TABLE child (x int, y varchar(9), KEY (x, y), CONSTRAINT `two` FOREIGN KEY (x, y)"
         " REFERENCES `odd name` (`a b`, `c-d`))");
    QStringList key;
    EXPECT_TRUE(Table("odd name").TryGetRowKey(key));
    EXPECT_EQ(key, QStringList({"a b", "c-d"}));
    EXPECT_FALSE(Table("prefixed").TryGetRowKey(key));
    EXPECT_FALSE(Table("keyless").TryGetRowKey(key));
    TDbmWholeReference reference;
    ASSERT_TRUE(Table("child").DDL().Keys().TryGetReference("TWO", reference));
    EXPECT_EQ(reference.Reference.RefTableName, "odd name");
    EXPECT_EQ(reference.Columns.size(), 2);
    EXPECT_TRUE(
        TDbmTableKeys::Parse("d", "  PRIMARY KEY (`a``b`,`c` DESC) USING BTREE").TryGetRowKey(key));
    EXPECT_EQ(key, QStringList({"a`b", "c"}));
    EXPECT_FALSE(TDbmTableKeys::Parse("d", "  PRIMARY KEY (`a`,(lower(`b`)))").TryGetRowKey(key));
}

TEST_P(TTableModelTest, IndexesAreReplaced)
{
    Exec("CREATE TABLE t (id int NOT NULL AUTO_INCREMENT, a varchar(20) NOT NULL, PRIMARY KEY (id),"
         " KEY k (a))");
    TDbmIndexCommands &indexes = Manager->Commands().Indexes();
    indexes.ExecuteUpdate(Name(), "t", {Column("id"), Column("a")}, Index("PRIMARY", ikPrimary),
                          "PRIMARY");
    const TDbmIndexEntity unique = Index("u", ikUnique);
    indexes.ExecuteUpdate(Name(), "t", {Column("a", 5)}, unique, "k");
    QStringList key;
    EXPECT_TRUE(Table("t").TryGetRowKey(key));
    EXPECT_EQ(key, QStringList({"id", "a"}));
    TDbmIndexList::TItemPtr item;
    EXPECT_FALSE(Table("t").Indexes().TryGetByName("k", item));
    TDbmIndexItem &made = Named(Table("t").Indexes(), "u");
    EXPECT_EQ(made.GetIndexTypeDisplayString(), "unique");
    EXPECT_EQ(made.Columns().GetColumnsDisplayString(), "a(5)");
    EXPECT_THROW(indexes.ExecuteUpdate(Name(), "t", {Column("no")}, unique, "u"), EDacMySqlError);
    EXPECT_FALSE(TableText("t").contains("`u`")); // drop, then add: the old one is gone
}

TEST_P(TTableModelTest, AForeignKeyKeepsItsNameOrIsPutBack)
{
    Exec("CREATE TABLE p (a int, b int, PRIMARY KEY (a, b))");
    Exec("CREATE TABLE c (x int, y int, KEY (x, y), CONSTRAINT `fk` FOREIGN KEY (x, y) REFERENCES "
         "p (a, b) ON DELETE SET NULL)");
    const QString before = TableText("c");
    TDbmWholeReference whole;
    ASSERT_TRUE(Table("c").DDL().Keys().TryGetReference("fk", whole));
    TDbmReferenceCommands &references = Manager->Commands().ForeignKeys();
    TDbmReferenceEntity broken = whole.Reference;
    broken.RefTableName = "missing";
    EXPECT_THROW(references.ExecuteUpdate(Name(), "c", whole.Columns, broken, "fk"),
                 EDacMySqlError);
    EXPECT_EQ(TableText("c"), before);
    TDbmReferenceEntity cascade = whole.Reference;
    cascade.OnDelete = roCascade;
    references.ExecuteUpdate(Name(), "c", whole.Columns, cascade, "fk");
    EXPECT_EQ(TableText("c"), QString(before).replace("SET NULL", "CASCADE"));
    cascade.ReferenceName = "other";
    references.ExecuteUpdate(Name(), "c", whole.Columns, cascade, "fk");
    EXPECT_TRUE(TableText("c").contains("CONSTRAINT `other` FOREIGN KEY (`x`, `y`)"));
    EXPECT_FALSE(TableText("c").contains("`fk`"));
    references.ExecuteDelete(Name(), "c", "other");
    EXPECT_FALSE(TableText("c").contains("FOREIGN KEY"));
}

TEST_P(TTableModelTest, TablesLiveThroughOperations)
{
    TDbmTableEntity entity;
    entity.TableName = "first";
    entity.Engine = "InnoDB";
    entity.Comment = "it's \"mine\"";
    Manager->Operations().CreateTable(Database(), entity);
    Exec("INSERT INTO first VALUES (), (), ()");
    TDbmTableItem &item = Table("first");
    EXPECT_EQ(item.Entity().Comment, entity.Comment);
    EXPECT_EQ(item.Entity().AutoIncrement.ToInt(), 4) << "fresh, not as of the last ANALYZE";
    EXPECT_EQ(item.Fields().Count(), 1);
    EXPECT_GT(Manager->Commands().Tables().ExecuteChecksum(Name(), "first"), 0u);

    TDbmTableEntity edited = item.Entity();
    edited.Comment = "new";
    Manager->Operations().UpdateTable(item, edited);
    EXPECT_EQ(&Table("first"), &item) << "the item stays";
    EXPECT_EQ(item.Entity().Comment, "new");

    edited.TableName = "second";
    Manager->Operations().UpdateTable(item, edited);
    TDbmTableList::TItemPtr found;
    EXPECT_FALSE(Database().Tables().TryGetByName("first", found));
    Manager->Operations().RenameTable(Table("second"), "third");

    Manager->Commands().Tables().ExecuteTruncate(Name(), "third");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM third"), "0");
    Exec("CREATE TABLE holder (x int unsigned, FOREIGN KEY (x) REFERENCES third (id))");
    Statements.clear();
    EXPECT_THROW(Manager->Operations().DeleteTable(Table("third")), EDacMySqlError);
    const qsizetype sent = Statements.size();
    EXPECT_EQ(Database().Tables().Count(), 2);
    EXPECT_EQ(Statements.size(), sent) << "a failed change marks nothing";
    Exec("DROP TABLE holder");
    Manager->Operations().DeleteTable(Table("third"));
    EXPECT_EQ(Database().Tables().Count(), 0);
}

TEST_P(TTableModelTest, ChecksAndPartitionsSurviveOperationsOnTheirTable)
{
    Exec("CREATE TABLE t (id int NOT NULL PRIMARY KEY, v int, CONSTRAINT `pos` CHECK (v > 0))"
         " PARTITION BY RANGE (id) (PARTITION p0 VALUES LESS THAN (10), PARTITION p1 VALUES LESS"
         " THAN MAXVALUE)");
    const auto text = [&](const QString &table) {
        return TableText(table)
            .replace('`' + table + '`', "`t`")
            .remove(QRegularExpression(" (COMMENT|ROW_FORMAT)=\\S+"));
    };
    const QString before = text("t");
    EXPECT_TRUE(before.contains("`pos` CHECK") && before.contains("MAXVALUE"));
    TDbmTableEntity entity = Table("t").Entity();
    entity.Comment = "new";
    Manager->Operations().UpdateTable(Table("t"), entity);
    EXPECT_EQ(text("t"), before);
    Manager->Operations().RenameTable(Table("t"), "t2");
    EXPECT_EQ(text("t2"), before);
    EXPECT_EQ(Table("t2").Entity().Comment, "new");
}

TEST_P(TTableModelTest, AHeldTableOutlivesItsDatabase)
{
    Exec("CREATE TABLE t (id int PRIMARY KEY, r int, KEY (r), FOREIGN KEY (r) REFERENCES t (id))");
    TDbmTableList::TItemPtr table;
    TDbmReferenceList::TItemPtr reference;
    ASSERT_TRUE(Database().Tables().TryGetByName("t", table));
    ASSERT_TRUE(table->References().TryGetByName("t_ibfk_1", reference));
    EXPECT_EQ(table->Fields().Count(), 2);
    FDatabase.reset();
    Manager->Databases().RequestProcess();
    Manager->Databases().Count();
    Statements.clear();
    table->RequestProcess();
    EXPECT_EQ(table->Entity().TableName, "t");
    EXPECT_EQ(table->Fields().Count(), 2);
    EXPECT_EQ(table->Triggers().Count(), 0);
    EXPECT_EQ(reference->Table().TableName(), "t");
    EXPECT_EQ(Statements, QStringList()) << "nothing is asked about what is gone";
    EXPECT_NO_THROW(Manager->Operations().DeleteTable(*table)) << "there is no list to mark";
}

TEST_P(TTableModelTest, PagesOfRows)
{
    Exec("CREATE TABLE t (id int PRIMARY KEY, txt text, b blob)");
    Exec("INSERT INTO t WITH RECURSIVE s AS (SELECT 1 AS i UNION ALL SELECT i + 1 FROM s WHERE i < "
         "201) SELECT i, REPEAT('x', i), 'b' FROM s");
    auto data = Manager->DataPool().AddData();
    data->SetParams(Name(), "t");
    data->SetCurrentPage(0);
    data->SetCurrentPage(3);
    data->SetOrderFieldName("id");
    EXPECT_EQ(data->GetDataset().RecordCount(), 1);
    EXPECT_EQ(data->GetDataset().FieldByName("id").AsString(), "201");
    EXPECT_EQ(data->GetDataset().FieldByName("txt").AsString(), "201") << "its length";
    EXPECT_EQ(data->PageCount(), 3);
    data->SetShowTextColumns(true);
    EXPECT_EQ(data->GetDataset().FieldByName("txt").AsString().size(), 201);
    Statements.clear();
    data->GetDataset();
    data->SetRowsPerPage(100);
    data->GetDataset();
    EXPECT_EQ(Statements.size(), 0);

    Exec("DELETE FROM t WHERE id > 150");
    Table("t").RequestProcess();
    EXPECT_EQ(data->GetDataset().RecordCount(), 0);
    EXPECT_EQ(data->CurrentPage(), 2) << "the next read is of a page that is there";
    data->SetWhereCommandText("id < 10");
    data->SetCurrentPage(1);
    EXPECT_EQ(data->GetDataset().RecordCount(), 9);
    data->SetWhereCommandText("no sql");
    EXPECT_THROW(data->GetDataset(), EDacMySqlError);
    EXPECT_EQ(data->GetDataset().RecordCount(), 9);
    Exec("DELETE FROM t WHERE id = 5");
    data->SetWhereCommandText("id < 10\n# all; but\nAND txt <> ';\n-- x'");
    EXPECT_EQ(data->GetDataset().RecordCount(), 8);
    EXPECT_EQ(data->RowCount(), 8) << "lines that a script would drop or end at count too";
    Manager->DataPool().ReleaseData(data);
}

INSTANTIATE_ON_BOTH_SERVERS(TTableModelTest);

} // namespace
