#pragma once

#include <QStringList>
#include <algorithm>

/// Names of objects in statements that others will run. The formatters put a name between
/// backticks as it is; a backtick in it must not end the name there.
struct TDbmDumpNames
{
    static QString Escaped(QString name) { return name.replace(u'`', QStringLiteral("``")); }
    static QStringList Escaped(QStringList names)
    {
        for (QString &name : names)
            name = Escaped(name);
        return names;
    }
    /// False for a name with a control character: it has no escape and would break the line.
    static bool CanWrite(const QString &name)
    {
        return std::none_of(name.begin(), name.end(), [](QChar c) { return c < u' '; });
    }
};
