#include "core/uDbmSqlProcessor.h"
#include "support/uException.h"
#include "support/uFileUtils.h"

#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

struct TScriptRow
{
    const char *Name;
    const char *Script;
    QStringList Statements;
    const char *Delimiter = ";";
};

const TScriptRow Scripts[] = {
    {"LastStatementNeedsNoDelimiter", "SELECT 1;\nSELECT 2", {"SELECT 1", "SELECT 2"}},
    {"TwoOnOneLineAreOne", "SELECT 1; SELECT 2;", {"SELECT 1; SELECT 2"}},
    {"LinesAreJoinedByCrLf", "SELECT\n  1,\r\n  2;", {"SELECT\r\n  1,\r\n  2"}},
    {"EmptyStatementsAreNotSent", ";\n;;\n  ;\n", {";"}},
    {"EmptyAndCommentLinesAreDropped",
     "# one\n   -- two\n--three\n\n  \t\nSELECT -- kept\n-- gone\n1;",
     {"SELECT -- kept\r\n1"}},
    {"BlockCommentsAreSent",
     "/*!40101 SET NAMES utf8 */;\n/* a\nb */\n;",
     {"/*!40101 SET NAMES utf8 */", "/* a\r\nb */"}},
    {"DelimiterAtALineEndInsideAStringEndsIt", "SELECT 'a;\nb';", {"SELECT 'a", "b'"}},
    {"RoutineBodyKeepsItsSemicolons",
     "DELIMITER $$\nCREATE PROCEDURE p()\nBEGIN\n  SELECT 1;\nEND$$\nDELIMITER ;\nSELECT 2;",
     {"CREATE PROCEDURE p()\r\nBEGIN\r\n  SELECT 1;\r\nEND", "SELECT 2"}},
    {"DelimiterIsFoundInAnyCase",
     "  delimiter GO\nSELECT 1 go\nSELECT 2 Go\nSELECT 3",
     {"SELECT 1", "SELECT 2", "SELECT 3"}},
    {"WordsThatBeginWithDelimiterAreTakenForIt",
     "CREATE TABLE t (\ndelimiters INT,\nb INT);\nDELIMITERED\nSELECT 1;",
     {"CREATE TABLE t (\r\nb INT)", "SELECT 1"}},
    {"RunsStartWithTheGivenDelimiter", "SELECT 1;$$\nSELECT 2$$", {"SELECT 1;", "SELECT 2"}, "$$"},
};

class TSqlProcessor : public ::testing::Test
{
protected:
    TSqlProcessor()
    {
        FProcessor.SetOnProcess(
            [this](TDbmSqlProcessor *, const QString &text) { FStatements.append(text); });
        FProcessor.SetOnProgress(
            [this](TDbmSqlProcessor *, double percent) { FProgress.append(percent); });
    }

    QStringList FromText(const QString &script)
    {
        FStatements.clear();
        FProcessor.ExecuteFromText(script);
        return FStatements;
    }

    QStringList FromFile(const QByteArray &bytes)
    {
        const QString name = FFolder.filePath("script.sql");
        TFileUtils::WriteBinary(name, bytes);
        FStatements.clear();
        FProcessor.ExecuteFromFile(name);
        return FStatements;
    }

    QTemporaryDir FFolder;
    TDbmSqlProcessor FProcessor;
    QStringList FStatements;
    QList<double> FProgress;
};

class TSqlProcessorRows : public TSqlProcessor, public ::testing::WithParamInterface<TScriptRow>
{};

TEST_P(TSqlProcessorRows, SplitsTextAndFileAlike)
{
    FProcessor.SetDelimiter(GetParam().Delimiter);
    EXPECT_EQ(FromText(GetParam().Script), GetParam().Statements);
    EXPECT_EQ(FromFile(GetParam().Script), GetParam().Statements);
}

INSTANTIATE_TEST_SUITE_P(Rows, TSqlProcessorRows, ::testing::ValuesIn(Scripts),
                         [](const auto &info) { return std::string(info.param.Name); });

TEST_F(TSqlProcessor, ChangedDelimiterEndsWithTheRun)
{
    FromText("DELIMITER $$\nSELECT 1$$");
    EXPECT_EQ(FromText("SELECT 1;\nSELECT 2$$"), (QStringList{"SELECT 1", "SELECT 2$$"}));
}

TEST_F(TSqlProcessor, ProgressFollowsTheLines)
{
    FromText("a;\nb;\n\nc;");
    EXPECT_EQ(FProgress, (QList<double>{25, 50, 75, 100}));
    FProgress.clear();
    FromFile("a;\n12345;\n");
    EXPECT_EQ(FProgress, (QList<double>{30, 100}));
    FProgress.clear();
    FromFile("");
    EXPECT_EQ(FProgress, QList<double>{0});
}

TEST_F(TSqlProcessor, WhatAListenerRaisesEndsTheRunAndLeavesNoRest)
{
    FProcessor.SetOnProcess([this](TDbmSqlProcessor *, const QString &text) {
        FStatements.append(text);
        if (text == "bad")
            throw EException("refused");
    });
    EXPECT_THROW(FromText("good;\nbad;\nnever;"), EException);
    EXPECT_EQ(FStatements, (QStringList{"good", "bad"}));
    EXPECT_EQ(FromText("next;"), QStringList{"next"});
}

} // namespace
