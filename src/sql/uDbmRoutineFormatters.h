#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about procedures and functions. Deliberate: the definer is read and shown, and never
/// written.
class TDbmRoutineFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmRoutineFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect(const QString &database) const;
    TDbmRoutineEntity ParseSelectRow(const TDataSet &row) const;
    QString FormatSelectParams(const QString &database, const QString &name,
                               TDbmRoutineType routineType) const;
    /// The text between the parentheses of the parameter list; empty when they do not balance.
    void ParseSelectParams(const TDataSet &row, TDbmRoutineType routineType, QString &params) const;
    QString FormatCreate(const QString &database, const TDbmRoutineEntity &entity,
                         const QString &params) const;
    /// The characteristics alone; a body changes only by a new routine.
    QString FormatUpdate(const QString &database, const QString &oldName,
                         const TDbmRoutineEntity &entity) const;
    QString FormatDelete(const QString &database, const TDbmRoutineEntity &entity) const;
    QString FormatDeleteProcedure(const QString &database, const QString &name) const;
    QString FormatDeleteFunction(const QString &database, const QString &name) const;
};
