#pragma once

#include <QStringList>

/// The sql_mode that a stored program keeps from the session that made it, on its way to another
/// session.
class TDbmSqlModes
{
public:
    struct TFit
    {
        QString Mode;     // to be set around its making; null when the session's own will do
        QStringList Lost; // words that do not arrive
    };
    /// `made` is the program's, `here` that of the session which will make it. Servers of the other
    /// kind do not know all words, and a file may meet any server.
    static TFit Fit(const QString &made, const QString &here, bool isOtherKind, bool intoFile);
};
