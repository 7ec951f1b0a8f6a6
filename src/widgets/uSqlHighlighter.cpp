#include "widgets/uSqlHighlighter.h"

#include "widgets/uSqlHighlighterWords.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

enum TLineState {
    lsPlain,
    lsComment,
    lsExecutedComment,
    lsSingleQuotes,
    lsDoubleQuotes,
    lsBackticks
};

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsHexDigit(char c)
{
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsWord(char c)
{
    return IsLetter(c) || IsDigit(c) || c == '_' || c == '$' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool IsBlankOrControl(char c)
{
    return static_cast<unsigned char>(c) <= ' ';
}

bool IsQuote(char c)
{
    return c == '\'' || c == '"' || c == '`';
}

/// One line on its way through the highlighter.
class TLine
{
public:
    TLine(const char *text, qsizetype length, char *styles)
        : FText(text), FLength(length), FStyles(styles)
    {}

    int Run(int state)
    {
        FState = state;
        if (FState != lsPlain)
            GoOn();
        while (FAt < FLength)
            Token();
        return FState;
    }

private:
    // NUL past the end is no character that any token is made of.
    char Peek(qsizetype ahead = 0) const
    {
        return FAt + ahead < FLength ? FText[FAt + ahead] : '\0';
    }

    void Paint(qsizetype to, TSqlStyle style)
    {
        to = std::min(to, FLength);
        memset(FStyles + FAt, style, size_t(to - FAt));
        FAt = to;
    }

    // What the line before left open.
    void GoOn()
    {
        switch (FState) {
        case lsComment:
        case lsExecutedComment:
            return Comment(0);
        case lsSingleQuotes:
            return Quoted('\'', 0);
        case lsDoubleQuotes:
            return Quoted('"', 0);
        default:
            return Quoted('`', 0);
        }
    }

    void Token()
    {
        const char c = Peek();
        if (IsQuote(c))
            return Open(c);
        if (c == '#' || IsDashComment())
            return Paint(FLength, ssComment);
        if (c == '/' && Peek(1) == '*')
            return OpenComment();
        if (c == '@')
            return Variable();
        if (IsDigit(c) || (c == '.' && IsDigit(Peek(1))))
            return Number();
        if (IsWord(c))
            return Word();
        if (c == '?' || (c == ':' && (IsLetter(Peek(1)) || Peek(1) == '_')))
            return Paint(WordEnd(FAt + 1, c == ':'), ssParameter);
        Paint(FAt + 1, ssDefault);
    }

    bool IsDashComment() const
    {
        // Two dashes alone are arithmetic: 5--1.
        return Peek() == '-' && Peek(1) == '-' && (FAt + 2 >= FLength || IsBlankOrControl(Peek(2)));
    }

    qsizetype WordEnd(qsizetype from, bool isWord = true) const
    {
        while (isWord && from < FLength && IsWord(FText[from]))
            ++from;
        return from;
    }

    void Open(char quote)
    {
        FState = quote == '\'' ? lsSingleQuotes : quote == '"' ? lsDoubleQuotes : lsBackticks;
        Quoted(quote, 1);
    }

    // A doubled quote ends one string and starts the next, which paints the same.
    void Quoted(char quote, qsizetype skip)
    {
        const TSqlStyle style = quote == '`' ? ssIdentifier : ssString;
        for (qsizetype i = FAt + skip; i < FLength; ++i) {
            if (FText[i] == '\\' && quote != '`') {
                ++i;
            } else if (FText[i] == quote) {
                FState = lsPlain;
                return Paint(i + 1, style);
            }
        }
        Paint(FLength, style);
    }

    void OpenComment()
    {
        const bool isExecuted = Peek(2) == '!' || (Peek(2) == 'M' && Peek(3) == '!');
        FState = isExecuted ? lsExecutedComment : lsComment;
        Comment(2);
    }

    void Comment(qsizetype skip)
    {
        const TSqlStyle style = FState == lsExecutedComment ? ssExecutedComment : ssComment;
        const qsizetype from = std::min(FAt + skip, FLength);
        const std::string_view rest(FText + from, size_t(FLength - from));
        const size_t end = rest.find("*/");
        if (end == std::string_view::npos)
            return Paint(FLength, style);
        FState = lsPlain;
        Paint(from + qsizetype(end) + 2, style);
    }

    void Variable()
    {
        qsizetype to = FAt + (Peek(1) == '@' ? 2 : 1);
        if (to < FLength && IsQuote(FText[to])) {
            const char *end = static_cast<const char *>(
                memchr(FText + to + 1, FText[to], size_t(FLength - to - 1)));
            return Paint(end ? end - FText + 1 : to, ssVariable);
        }
        while (to < FLength && (IsWord(FText[to]) || FText[to] == '.'))
            ++to;
        Paint(to, ssVariable);
    }

    void Number()
    {
        qsizetype to = FAt;
        const char mark = char(Peek(1) | 0x20);
        if (Peek() == '0' && (mark == 'x' || mark == 'b')) {
            for (to += 2; to < FLength && IsHexDigit(FText[to]);)
                ++to;
        } else {
            to = DecimalEnd(to);
        }
        // A name may begin with digits.
        const qsizetype wordEnd = WordEnd(to);
        Paint(wordEnd, wordEnd > to ? ssDefault : ssNumber);
    }

    qsizetype DecimalEnd(qsizetype to) const
    {
        const auto digits = [&] {
            while (to < FLength && IsDigit(FText[to]))
                ++to;
        };
        digits();
        if (to < FLength && FText[to] == '.') {
            ++to;
            digits();
        }
        if (to < FLength && (FText[to] | 0x20) == 'e') {
            qsizetype power = to + 1;
            if (power < FLength && (FText[power] == '-' || FText[power] == '+'))
                ++power;
            if (power < FLength && IsDigit(FText[power])) {
                to = power;
                digits();
            }
        }
        return to;
    }

    void Word()
    {
        const qsizetype to = WordEnd(FAt);
        const bool isQualified = FAt > 0 && FText[FAt - 1] == '.';
        const bool isLiteralMark =
            to == FAt + 1 && to < FLength && FText[to] == '\'' &&
            std::string_view("xXbBnN").find(Peek()) != std::string_view::npos;
        if (isLiteralMark) {
            Paint(to, ssString);
            return;
        }
        Paint(to, isQualified ? ssDefault : WordStyle(to));
    }

    TSqlStyle WordStyle(qsizetype to) const
    {
        const size_t length = size_t(to - FAt);
        char lower[64];
        if (length > std::min(sizeof lower, TSqlHighlighterWords::LongestWord()))
            return ssDefault;
        for (size_t i = 0; i < length; ++i) {
            const char c = FText[FAt + qsizetype(i)];
            lower[i] = c >= 'A' && c <= 'Z' ? char(c | 0x20) : c;
        }
        const bool isCalled = to < FLength && FText[to] == '(';
        return TSqlHighlighterWords::StyleOf({lower, length}, isCalled);
    }

    const char *FText;
    const qsizetype FLength;
    char *FStyles;
    qsizetype FAt = 0;
    int FState = lsPlain;
};

} // namespace

int TSqlHighlighter::StyleLine(const char *text, qsizetype length, int state, char *styles)
{
    return TLine(text, length, styles).Run(state);
}

bool TSqlHighlighter::IsInQuotes(int state)
{
    return state >= lsSingleQuotes;
}
