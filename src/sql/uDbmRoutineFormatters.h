#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"
#include "sql/uDbmTextSettings.h"

/// A routine as the server tells it, with its definer, so that it can be put back.
struct TDbmRoutineText
{
    QString Statement; // names the database; empty when the server did not tell the text
    TDbmTextSettings Settings;
};

/// Statements about procedures and functions. Deliberate: the definer is read and shown, and never
/// written.
class TDbmRoutineFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmRoutineFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect(const QString &database) const;
    /// `Returns` has the character set and collation of the type, also where the server keeps them
    /// in columns of their own.
    TDbmRoutineEntity ParseSelectRow(const TDataSet &row) const;
    /// Takes a collation out of `Returns` that is the default one of its character set, as the
    /// server does itself: another server may not know it.
    static void RemoveDefaultCollation(TDbmRoutineEntity &entity,
                                       const QList<TDbmCharsetEntity> &charsets);
    QString FormatSelectParams(const QString &database, const QString &name,
                               TDbmRoutineType routineType) const;
    /// The text between the parentheses of the parameter list; empty when they do not balance.
    void ParseSelectParams(const TDataSet &row, TDbmRoutineType routineType, QString &params) const;
    /// The same for a routine that is to be made anew: parentheses inside quotes and comments do
    /// not count. False where the list cannot be told, as for a text that the account may not see.
    bool TryParseWholeParams(const TDataSet &row, TDbmRoutineType routineType,
                             QString &params) const;
    /// Gives `entity` the body as it was written, where the row tells it.
    void ParseSelectBody(const TDataSet &row, TDbmRoutineEntity &entity) const;
    TDbmRoutineText ParseSelectText(const TDataSet &row, const QString &database,
                                    TDbmRoutineType routineType) const;
    /// A regular expression for the start of CREATE up to the name; its one group is the kind.
    static QString CreatePattern();
    QString FormatCreate(const QString &database, const TDbmRoutineEntity &entity,
                         const QString &params) const;
    /// The characteristics alone; a body changes only by a new routine.
    QString FormatUpdate(const QString &database, const QString &oldName,
                         const TDbmRoutineEntity &entity) const;
    QString FormatDelete(const QString &database, const TDbmRoutineEntity &entity) const;
    QString FormatDeleteProcedure(const QString &database, const QString &name) const;
    QString FormatDeleteFunction(const QString &database, const QString &name) const;
};
