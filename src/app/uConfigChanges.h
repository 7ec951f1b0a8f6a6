#pragma once

#include "app/uConfig.h"

#include <variant>
#include <vector>

/// What is to be written into a configuration, taken where the values are and applied elsewhere,
/// also on another thread: texts of megabytes are encoded there.
class TConfigChanges
{
public:
    void ClearNode(const QString &groupPath);
    void SetValue(const QString &groupPath, const QString &name, const QString &value,
                  bool hex = false);
    void SetValue(const QString &groupPath, const QString &name, int value);
    // Only bool itself: a text literal would choose it before QString.
    template <std::same_as<bool> T>
    void SetValue(const QString &groupPath, const QString &name, T value)
    {
        FChanges.push_back({groupPath, name, value});
    }
    /// In the order in which they were told.
    void ApplyTo(TConfig &config) const;

private:
    struct TChange
    {
        QString Group, Name;
        std::variant<std::monostate, QString, int, bool> Value; // without one the group is cleared
        bool IsHex = false;
    };

    std::vector<TChange> FChanges;
};
