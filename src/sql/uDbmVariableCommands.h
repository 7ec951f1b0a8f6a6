#pragma once

#include "sql/uDbmChildCommands.h"

class TDbmVariableCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmVariableEntity> ExecuteSelect(TDbmVariableOption option);
    /// Empty when the variable is unknown or the read failed.
    void ExecuteGetValue(const QString &name, TDbmVariableOption option, QString &value);
    void ExecuteSetValue(const QString &name, const TVariant &value,
                         TDbmVariableOption option) const;
};
