#pragma once

#include "core/uDbmConnectionProfile.h"
#include "jobs/uDbmDumpSession.h"
#include "jobs/uDbmDumpUtils.h"
#include "jobs/uWorker.h"

#include <QFile>

class TDbmManager;

/// Writes a database into one file of statements: UTF-8 with a mark, lines ending in CR LF, no
/// DROP, no footer. Loads into a server that does not have the database.
class TDbmCreateSqlDumpWorker : public TWorker
{
public:
    TDbmCreateSqlDumpWorker();
    ~TDbmCreateSqlDumpWorker() override;

    TDbmConnectionProfile FProfile;
    QString FDatabaseName;
    QString FFileName; // replaced when it exists
    QString FCharset;  // empty: that of the profile
    bool FOnlyStructure = false;

protected:
    void Execute() override;

private:
    void OpenConnection();
    void CreateFile();
    void CloseFile();
    void WriteHeader();
    void WriteDatabase();
    void WriteTables();
    void WriteTable(const QString &table);
    void WriteData(const QString &table);
    void WriteRows(const QString &table, const TDbmRowsStatement &rows);
    void WriteReferences(const QString &table);
    void WriteTriggers(const QString &table);
    void WriteRoutines();
    void WriteViews();
    void WriteEvents();
    void LogLeftOut();

    void Write(const QByteArray &bytes);
    void WriteLine(const QString &text = {});
    void WriteStatement(const QString &text);
    /// An empty line, then the statement.
    void WriteBlock(const char *delimiter, const QString &text);
    void SetDelimiter(const QString &delimiter);

    std::unique_ptr<TDbmManager> FManager;
    TDbmDumpUtils FDumpUtils;
    TDbmDumpModes FModes;
    QFile FStream;
    QString FDelimiter;
    QString FCurrentCharset;
    QStringList FTables;
};
