#include "app/uConfigChanges.h"

void TConfigChanges::ClearNode(const QString &groupPath)
{
    FChanges.push_back({groupPath, {}, {}});
}

void TConfigChanges::SetValue(const QString &groupPath, const QString &name, const QString &value,
                              bool hex)
{
    FChanges.push_back({groupPath, name, value, hex});
}

void TConfigChanges::SetValue(const QString &groupPath, const QString &name, int value)
{
    FChanges.push_back({groupPath, name, value});
}

void TConfigChanges::ApplyTo(TConfig &config) const
{
    for (const TChange &change : FChanges) {
        if (const auto *text = std::get_if<QString>(&change.Value))
            config.SetValue(change.Group, change.Name, *text, change.IsHex);
        else if (const auto *number = std::get_if<int>(&change.Value))
            config.SetValue(change.Group, change.Name, *number);
        else if (const auto *flag = std::get_if<bool>(&change.Value))
            config.SetValue(change.Group, change.Name, *flag);
        else
            config.ClearNode(change.Group);
    }
}
