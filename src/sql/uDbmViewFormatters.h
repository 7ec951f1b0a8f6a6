#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about views.
class TDbmViewFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmViewFormatters(const TDbmServerFeatures *features) : TDbmChildFormatters(features)
    {}

    QString FormatSelect(const QString &database) const;
    QString FormatSelectRow(const QString &database, const QString &view) const;
    TDbmViewEntity ParseSelectRow(const TDataSet &row) const;
    /// The algorithm stands in the view's text alone on some servers.
    QString FormatSelectDDL(const QString &database, const QString &view) const;
    QString ParseSelectAlgorithm(const TDataSet &row) const;
    /// The definition without the database's name in backticks; exact letter case.
    QString FormatDefinition(const QString &definition, const QString &database) const;
    /// `definitionDatabase` is what `stripDatabase` takes out of the definition.
    QString FormatCreate(const QString &database, const TDbmViewEntity &entity, bool stripDatabase,
                         bool withDefiner, bool orReplace, const QString &definitionDatabase) const;
    QString FormatDelete(const QString &database, const QString &view, bool ifExists) const;
    QString FormatRename(const QString &database, const QString &oldName,
                         const QString &newName) const;
};
