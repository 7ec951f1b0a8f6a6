#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the server's plugins.
class TDbmPluginFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmPluginFormatters(const TDbmServerFeatures *features)
        : TDbmChildFormatters(features)
    {}

    QString FormatInstall(const QString &name, const QString &library) const;
    QString FormatUninstall(const QString &name) const;
    QString FormatSelect() const;
    /// A column that the server does not have gives empty text.
    QList<TDbmPluginEntity> ParseSelect(TDataSet &rows) const;
};
