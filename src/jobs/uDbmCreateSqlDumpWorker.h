#pragma once

#include "core/uDbmConnectionProfile.h"
#include "jobs/uDbmDumpSession.h"
#include "jobs/uDbmDumpUtils.h"
#include "jobs/uWorker.h"

#include <QFile>

class TCharsetCodec;
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
    QString FCharset;  // that the file is read in; empty: that of the profile
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
    void WriteProgram(const QString &text, const char *kind, const QString &name);
    void WriteRoutines();
    void WriteViews();
    void WriteEvents();
    void LogLeftOut();

    void Write(const QByteArray &bytes);
    void WriteLine(const QString &text = {});
    void WriteStatement(const QString &text);
    bool Fits(const QString &text) const;
    void EnterWideSet(bool fits);
    void LeaveWideSet(bool fits);
    /// An empty line, then the statement.
    void WriteBlock(const char *delimiter, const QString &text);
    void SetDelimiter(const QString &delimiter);

    std::unique_ptr<TDbmManager> FManager;
    TDbmDumpUtils FDumpUtils;
    TDbmDumpModes FModes;
    QFile FStream;
    QString FDelimiter;
    QString FCurrentCharset; // of the file
    std::shared_ptr<const TCharsetCodec>
        FCodec; // of the file's set; nullptr when it has everything
    QStringList FTables;
};
