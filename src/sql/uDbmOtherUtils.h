#pragma once

#include <QString>

class TDbmOtherUtils
{
public:
    /// user@host as 'user'@'host'; without a host the user alone.
    static QString FormatUser(const QString &userAtHost);
};
