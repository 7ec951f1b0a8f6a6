#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about scheduled events.
class TDbmEventFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmEventFormatters(const TDbmServerFeatures *features) : TDbmChildFormatters(features)
    {}

    QString FormatSelect(const QString &database) const;
    TDbmEventEntity ParseSelectRow(const TDataSet &row) const;
    QString FormatSelectBody(const QString &database, const QString &name) const;
    /// Raises what TDbmIntervalUtils::FormatValue raises; so does FormatUpdate.
    QString FormatCreate(const QString &database, const TDbmEventEntity &entity,
                         bool withDefiner) const;
    QString FormatUpdate(const QString &database, const QString &oldName,
                         const TDbmEventEntity &entity) const;
    QString FormatRename(const QString &database, const QString &oldName,
                         const QString &newName) const;
    QString FormatDelete(const QString &database, const QString &name) const;

private:
    QString FormatStatus(TDbmEventStatus status) const;
};
