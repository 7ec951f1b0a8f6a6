#pragma once

#include "sql/uDbmChildCommands.h"

class TDbmCharsetCommands : public TDbmChildCommands
{
public:
    using TDbmChildCommands::TDbmChildCommands;

    QList<TDbmCharsetEntity> ExecuteSelect();
    /// Empty when the read failed.
    void ExecuteGetSessionCharset(QString &name);
};
