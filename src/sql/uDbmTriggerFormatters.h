#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// A trigger with its body as the server has it, so that it can be put back.
struct TDbmWholeTrigger
{
    TDbmTriggerEntity Entity;
    qint64 ActionOrder = 0; // among the triggers of one event; 0 where the server has no order
};

/// Statements about triggers.
class TDbmTriggerFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmTriggerFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect(const QString &database, const QString &table) const;
    /// The body is tidied; see ParseBody.
    TDbmTriggerEntity ParseSelectRow(const TDataSet &row) const;
    /// Deliberate: the definer is not written.
    QString FormatCreate(const QString &database, const QString &table,
                         const TDbmTriggerEntity &entity) const;
    QString FormatDelete(const QString &database, const QString &name) const;

    /// Empty for a server that does not tell a trigger so.
    QString FormatSelectBody(const QString &database, const QString &name) const;
    TDbmWholeTrigger ParseSelectWholeRow(const TDataSet &row) const;
    /// As FormatCreate, with the definer and the place among `others` of the table, where the
    /// server knows places.
    QString FormatRestore(const QString &database, const QString &table,
                          const TDbmWholeTrigger &trigger,
                          const QList<TDbmWholeTrigger> &others) const;

private:
    TDbmTriggerEntity ParseRow(const TDataSet &row, const QString &body) const;
};
