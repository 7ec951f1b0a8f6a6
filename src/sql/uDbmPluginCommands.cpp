#include "sql/uDbmPluginCommands.h"

QList<TDbmPluginEntity> TDbmPluginCommands::ExecuteSelect() const
{
    const TDbmPluginFormatters &formatters = FFormatters->Plugins();
    QList<TDbmPluginEntity> plugins;
    FProvider->Command().ExecuteQuery(formatters.FormatSelect(), [&](TDataSet *rows) {
        if (rows)
            plugins = formatters.ParseSelect(*rows);
    });
    return plugins;
}
