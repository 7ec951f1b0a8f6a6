#include "uModelFixture.h"

namespace {

using TFamilyModelTest = TModelTest;

TEST_P(TFamilyModelTest, ATableIsMadeWithItsColumnsAndKeys)
{
    TDbmTableEntity entity;
    entity.TableName = "t";
    entity.Comment = "made";
    TDbmFieldEntity id, text;
    id.FieldName = "id";
    id.FieldType.DataType = fdtInt;
    text.FieldName = "text";
    text.FieldType.DataType = fdtVarChar;
    text.FieldType.Length = 20;
    text.Nullable = true;
    Manager->Commands().Tables().ExecuteCreate(
        Name(), entity, {id, text},
        {Index("PRIMARY", ikPrimary), Index("none", ikNone), Index("k", ikUnique)},
        {{Column("id")}, {}, {Column("text"), Column("id")}});
    ASSERT_EQ(Table("t").Fields().Count(), 2);
    EXPECT_EQ(Table("t").Indexes().Count(), 2);
    EXPECT_EQ(Table("t").Entity().Comment, "made");
}

TEST_P(TFamilyModelTest, AViewWithoutATextIsMendedAllTheSame)
{
    Exec("CREATE TABLE t (a int)");
    Exec("CREATE ALGORITHM=TEMPTABLE VIEW v AS SELECT a FROM t");
    TDbmViewCommands &views = Manager->Commands().Views();
    EXPECT_EQ(views.ExecuteSelectAlgorithm(Name(), "v"), "TEMPTABLE");
    EXPECT_EQ(views.ExecuteSelectAlgorithm(Name(), "gone"), "");
    TDbmViewEntity entity;
    ASSERT_TRUE(views.ExecuteSelectRow(Name(), "v", entity));
    Exec("DROP TABLE t");
    entity.Definition = "select 1 AS `a`";
    views.ExecuteUpdate(Name(), "v", entity);
    EXPECT_EQ(Value("SELECT a FROM v"), "1");
    // Another failure does not pass for a view without an algorithm.
    EXPECT_THROW(views.ExecuteSelectAlgorithm(Name(), ""), EDacMySqlError);
}

TEST_P(TFamilyModelTest, WhatCannotBePutBackIsNamed)
{
    Exec("CREATE TABLE p (id int PRIMARY KEY)");
    Exec("CREATE TABLE c (id int PRIMARY KEY, CONSTRAINT fk FOREIGN KEY (id) REFERENCES p (id))");
    Exec("SET foreign_key_checks = 0; INSERT INTO c VALUES (7)");
    TDbmReferenceEntity missing;
    missing.ReferenceName = "fk";
    missing.RefDatabaseName = Name();
    missing.RefTableName = "missing";
    TDbmReferenceColumnEntity column;
    column.SrcColumnName = column.RefColumnName = "id";
    try {
        Manager->Commands().ForeignKeys().ExecuteUpdate(Name(), "c", {column}, missing, "fk");
        ADD_FAILURE() << "there is no such table";
    } catch (const EDacMySqlError &e) {
        EXPECT_TRUE(e.CommandText().contains("`missing`")) << e.CommandText().toStdString();
        EXPECT_TRUE(e.ErrorMessage().contains("could not be put back: (1452)"))
            << e.ErrorMessage().toStdString();
        EXPECT_TRUE(e.ErrorMessage().contains("REFERENCES `p` (`id`)"));
    }
}

INSTANTIATE_ON_BOTH_SERVERS(TFamilyModelTest);

} // namespace
