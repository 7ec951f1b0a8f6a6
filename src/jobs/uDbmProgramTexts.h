#pragma once

#include <QString>

/// Finds the body in the statement that SHOW CREATE tells of a stored program.
///
/// The lists of a server tell bodies as well, with their quoted texts written anew; one kind of
/// server loses quotes inside of them on the way, and what it tells is another program.
class TDbmProgramTexts
{
public:
    /// `kind` is PROCEDURE, FUNCTION, TRIGGER or EVENT. Empty when there is no body to be found.
    static QString Body(const QString &kind, const QString &create);
    /// The column of the answer that has the statement.
    static QString Column(const QString &kind);
};
