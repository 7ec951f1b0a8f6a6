#include "sql/uDbmPluginFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "sql/uVariantUtils.h"
#include "support/uFormat.h"

QString TDbmPluginFormatters::FormatInstall(const QString &name, const QString &library) const
{
    return TFormat::Format("INSTALL PLUGIN `%s` SONAME '%s'",
                           {name, TDbmSqlStringFormatter::Format(library)});
}

QString TDbmPluginFormatters::FormatUninstall(const QString &name) const
{
    return TFormat::Format("UNINSTALL PLUGIN `%s`", {name});
}

QString TDbmPluginFormatters::FormatSelect() const
{
    return "SELECT * FROM INFORMATION_SCHEMA.PLUGINS";
}

QList<TDbmPluginEntity> TDbmPluginFormatters::ParseSelect(TDataSet &rows) const
{
    static constexpr struct
    {
        const char *Column;
        QString TDbmPluginEntity::*Member;
    } columns[] = {{"PLUGIN_NAME", &TDbmPluginEntity::PluginName},
                   {"PLUGIN_VERSION", &TDbmPluginEntity::Version},
                   {"PLUGIN_STATUS", &TDbmPluginEntity::Status},
                   {"PLUGIN_TYPE", &TDbmPluginEntity::PluginType},
                   {"PLUGIN_TYPE_VERSION", &TDbmPluginEntity::TypeVersion},
                   {"PLUGIN_LIBRARY", &TDbmPluginEntity::PluginLibrary},
                   {"PLUGIN_LIBRARY_VERSION", &TDbmPluginEntity::LibraryVersion},
                   {"PLUGIN_AUTHOR", &TDbmPluginEntity::Author},
                   {"PLUGIN_DESCRIPTION", &TDbmPluginEntity::Description},
                   {"PLUGIN_LICENSE", &TDbmPluginEntity::License}};
    QList<const TField *> fields;
    for (const auto &column : columns)
        fields.append(rows.FindField(column.Column));
    QList<TDbmPluginEntity> plugins;
    TDatasetUtils::ForEach(rows, [&](TDataSet &) {
        TDbmPluginEntity entity;
        for (qsizetype i = 0; i < fields.size(); ++i)
            if (fields[i])
                entity.*columns[i].Member = TFieldReading::Text(*fields[i]);
        plugins.append(entity);
    });
    return plugins;
}
