#pragma once

#include <QStringList>

/// What becomes of a statement's text on its way through a file: the reader of such files takes it
/// line by line, and not every character and line comes back as it went in.
class TDbmFileTexts
{
public:
    /// Whether the reader drops a character of the text.
    static bool HasDropped(const QString &text);
    /// Whether the text has characters that the reader drops and that have no escape.
    static bool NeedsDigits(const QString &text);
    /// The body of a stored program so that all of it but comment lines comes back: line ends
    /// inside quotes as escapes, other lines that the reader would take otherwise shielded.
    /// `hasEscapes` is false where backslashes are none.
    static QString Fitted(const QString &body, bool hasEscapes);
    /// The text with an underscore for each line end, and each character that the reader drops, in
    /// a name between backticks: it has no escape there, and the rest would be a line of its own.
    static QString FittedNames(const QString &text);
    /// What of the fitted body does not come back, in words; empty for nearly every one.
    static QStringList Losses(const QString &body);
    /// The delimiter of stored programs, or another one where a line inside the text ends so.
    static QString Delimiter(const QString &program);
    /// A text as digits, for what has no escape.
    static QString HexLiteral(const QString &text);
};
