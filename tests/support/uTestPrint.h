#pragma once

#include "support/uVariant.h"

#include <QString>
#include <ostream>

// How the failures of tests show the values that Qt and the system do not print.

inline std::ostream &operator<<(std::ostream &out, const QString &text)
{
    return out << '"' << text.toStdString() << '"';
}

inline std::ostream &operator<<(std::ostream &out, const TVariant &value)
{
    return out << (value.IsNull() ? "null" : value.ToString().toStdString());
}
