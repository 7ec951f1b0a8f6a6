#pragma once

#include <QString>

/// Looks at the text of a statement outside of its quotes and comments, whichever the quotes are.
class TDbmQuotedText
{
public:
    /// The text with an x for each character of a quoted part or comment: what is found in it
    /// stands outside of them, and positions hold.
    static QString Masked(const QString &text);
    /// An expression of the server's own writing, with the names of one column replaced.
    static QString RenameColumn(const QString &expression, const QString &oldName,
                                const QString &newName);
};
