#pragma once

#include <QtGlobal>

/// What a piece of SQL text is; the numbers are the styles of the editor's buffer.
enum TSqlStyle : char {
    ssDefault,
    ssKeyword,
    ssDataType,
    ssFunction,
    ssString,
    ssIdentifier, // in backticks
    ssComment,
    ssExecutedComment, // the server runs what is inside
    ssNumber,
    ssVariable,
    ssParameter,
    ssCount,
};

/// Tells the parts of SQL text of the MySQL dialect, line by line.
class TSqlHighlighter
{
public:
    /// Writes the style of every byte of a line of UTF-8 text and gives the state at its end. The
    /// state is what the line before gave; 0 at the start, and wherever no string, quoted name or
    /// block comment goes on into the next line.
    static int StyleLine(const char *text, qsizetype length, int state, char *styles);
    /// Whether a line that ends with this state ends inside a string or a quoted name.
    static bool IsInQuotes(int state);
};
