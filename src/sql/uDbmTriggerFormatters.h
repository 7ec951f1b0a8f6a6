#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

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

    /// One trigger with its body as the server has it, so that it can be put back.
    QString FormatSelectRow(const QString &database, const QString &name) const;
    TDbmTriggerEntity ParseSelectWholeRow(const TDataSet &row) const;
    /// As FormatCreate, with the definer.
    QString FormatRestore(const QString &database, const QString &table,
                          const TDbmTriggerEntity &entity) const;

private:
    TDbmTriggerEntity ParseRow(const TDataSet &row, const QString &body) const;
};
