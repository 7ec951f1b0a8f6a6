#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the server's threads.
class TDbmProcessFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmProcessFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatSelect() const;
    /// All rows at once: the columns are looked up once.
    QList<TDbmProcessEntity> ParseSelect(TDataSet &rows) const;
    QString FormatKillQuery(qint64 id) const;
    QString FormatKillConnection(qint64 id) const;
};
