#pragma once

#include "client/uDataSet.h"

/// Finds the body in the statement that SHOW CREATE tells of a stored program.
///
/// The lists of a server tell bodies as well, with their quoted texts written anew; one kind of
/// server loses quotes inside of them on the way, and what it tells is another program.
class TDbmProgramTexts
{
public:
    /// `kind` is PROCEDURE, FUNCTION, TRIGGER or EVENT. Empty when there is no body to be found.
    static QString Body(const QString &kind, const QString &create);
    /// The same of the row that SHOW CREATE answers.
    static QString ParseBody(const QString &kind, const TDataSet &row);

private:
    /// The column of the answer that has the statement.
    static QString Column(const QString &kind);
};
