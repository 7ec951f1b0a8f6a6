#pragma once

#include "jobs/uDbmTableRows.h"
#include "sql/uDbmFormatters.h"
#include "sql/uDbmTableKeys.h"
#include "support/uFormat.h"

#include <QHash>
#include <QSet>

class TDbmDatabaseItem;

/// Turns objects of a database into statements that make them elsewhere: in a file, or on another
/// server. An object that is not found gives an empty text. Nothing is read past its keys: what the
/// statements cannot carry is kept in LeftOut.
class TDbmDumpUtils
{
public:
    using TConsumer = TDbmTableRows::TConsumer;

    TDbmManager *FManager = nullptr;             // of the source, not owned
    const TDbmFormatters *FFormatters = nullptr; // of the server that will run the text, not owned
    const TDbmServerFeatures *FFeatures = nullptr; // of the same server, not owned
    QString FSourceDatabaseName;
    QString FTargetDatabaseName;   // empty: statements name objects without a database
    QString FDefaultCollation;     // tables do not write this one; empty: each writes its own
    QStringList FTargetCollations; // known to the target; empty: those of the source
    bool FIntoFile = false;        // the statements pass the reader of script files
    QString FStatementCharset;     // see TDbmTableRows
    // Of a fresh session that will run the statements.
    QString FSessionMode, FSessionZone, FSessionCollation;
    std::function<bool()> FStopRequested;

    /// Makes a list that the server refuses to tell an error of the operation that asked for it,
    /// for as long as this object lives; elsewhere such a list is an empty one.
    void WatchReads();
    ~TDbmDumpUtils();

    QString DumpCreateDatabase();
    QString DumpAlterDatabase();
    QString DumpDropDatabase();
    /// `newName` is what the copy is called; empty: as the table.
    QString DumpCreateTable(const QString &table, const QString &newName = {});
    QString DumpDropTable(const QString &table);
    QString DumpCreateView(const QString &view);
    QString DumpDropView(const QString &view, bool ifExists);
    /// A procedure and a function may share their name.
    QString DumpCreateRoutine(const QString &routine, TDbmRoutineType type);
    QString DumpDropRoutine(const QString &routine, TDbmRoutineType type, bool ifExists);
    QString DumpCreateEvent(const QString &event);
    QString DumpDropEvent(const QString &event);
    QString DumpAlterTableAddForeignKey(const QString &table, const QString &reference);
    QString DumpCreateTrigger(const QString &table, const QString &trigger);
    void DumpData(const QString &sourceTable, const QString &targetTable, bool ignore, bool delayed,
                  bool replace, const TConsumer &consumer);

    /// What there is to dump, in the order of the lists; what cannot be written is left out. Raises
    /// EException when the server refuses to tell.
    QStringList Tables();
    QStringList References(const QString &table);
    QStringList Triggers(const QString &table);
    QList<TDbmRoutineEntity> Routines();
    QStringList Views();
    QStringList Events();
    const TDbmTableKeys &Keys(const QString &table);
    /// Whether a statement that makes the table needs more than a strict server takes; TDbmRowNeed
    /// flags.
    int TableNeeds(const QString &table);

    /// The sql_mode that a stored program has to be made in; null when it is that of any session.
    /// `kind` is TRIGGER, PROCEDURE, FUNCTION or EVENT.
    QString ProgramMode(const QString &kind, const QString &name);
    /// The same of the collation that its texts have, also of a VIEW. A file does not carry it.
    QString ProgramCollation(const QString &kind, const QString &name);

    /// One line for each thing that was met and not written, in the order met.
    const QStringList &LeftOut() const { return FLeftOut; }

private:
    std::shared_ptr<TDbmDatabaseItem> Database();
    bool TryGetTable(const QString &table, std::shared_ptr<TDbmTableItem> &item);
    const QString &DDL(const QString &table);
    bool MayHaveTriggers(const QString &table);
    bool CanWriteTable(const QString &table);
    struct TProgram
    {
        QString Mode, Body, Collation, DatabaseCollation;
    };
    TProgram Program(const QString &kind, const QString &name);
    QString ExactBody(const QString &kind, const QString &name, const QString &listed);
    QString FitComment(QString text, const QString &comment, const QString &kind,
                       const QString &name);
    QString FitProgram(const QString &body, const QString &kind, const QString &name);
    QString Carried(const QString &text, const char *kind, const QString &name);
    void FitIndex(TDbmWholeIndex &index, const QString &table);
    void FitDefault(TDbmFieldEntity &field);
    void NoteOptions(const QString &table);
    void NoteColumns(const QString &table);
    void ReadSequences();
    TDbmDatabaseEntity TargetDatabase();
    void FitField(TDbmFieldEntity &field, const QString &table);
    QString FitCollation(const QString &collation);
    void NoteTable(const QString &table);
    void NoteDefiner(const QString &definer, const char *kind, const QString &name);
    void CheckReads();
    void LeaveOut(const QString &format, const QList<TFormat::TArgument> &args);
    bool CanWrite(const char *kind, const QString &name);
    QString Target() const;

    QStringList FLeftOut;
    bool FWatches = false;
    QString FReadError; // of the last list that was not told
    QString FDDLTable, FDDL;
    TDbmTableKeys FKeys;           // of FDDLTable
    QHash<QString, QString> FDDLs; // of tables: they are asked for again when all are there
    qsizetype FKeptSize = 0;       // characters in FDDLs
    std::optional<QSet<QString>> FTriggerTables; // in lower case
    std::optional<QList<TDbmRoutineEntity>> FRoutines;
    std::optional<QStringList> FSequences;
    QStringList FLeftTables; // tables that cannot be written
    std::optional<QHash<QString, TProgram>> FPrograms;
};
