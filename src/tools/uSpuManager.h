#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

/// A place in a text; line and character count from 1.
struct TSpuPosition
{
    qint32 FLineIndex = 1;
    qint32 FCharIndex = 1; // UTF-16 units
    auto operator<=>(const TSpuPosition &) const = default;
};

/// By line, then by character: negative, zero or positive.
struct TSpuPositionComparer
{
    static int Compare(const TSpuPosition &left, const TSpuPosition &right);
};

using TSpuPositions = std::vector<TSpuPosition>;

/// A stretch of text from its first character to its last, both included.
struct TSpuElement
{
    TSpuPosition FBPosition, FEPosition;
};
struct TSpuString : TSpuElement
{};
struct TSpuComment : TSpuElement
{};

using TSpuStringList = std::vector<TSpuString>;
using TSpuCommentList = std::vector<TSpuComment>;

/// The text of an editor, asked for when it is scanned.
using TSpuTextSource = std::function<QString()>;

class TSpuBaseUtils
{
public:
    static bool PositionInElement(const TSpuPosition &position, const TSpuElement &element);
    /// Every occurrence of the character, in the order of the text.
    static TSpuPositions SkanCharPositions(const QString &text, QChar character);
};

/// Finds strings and comments and nothing else: no keywords, no statements, no delimiters. A
/// backslash, a double quote and a backtick have no meaning here.
class TSpuPrimaryParser
{
public:
    enum TSkanStatus { ssNormal, ssInString, ssInBlockComment };

    explicit TSpuPrimaryParser(TSpuTextSource strings) : FStrings(std::move(strings)) {}

    void Execute();
    bool PositionInComment(const TSpuPosition &position) const;
    bool PositionInString(const TSpuPosition &position) const;
    const TSpuCommentList &Comments() const { return FCommentList; }
    const TSpuStringList &Strings() const { return FStringList; }

private:
    class TScan;

    TSpuTextSource FStrings;
    TSpuCommentList FCommentList; // in order of appearance, as is the next
    TSpuStringList FStringList;
};

/// Whether a place in an editor stands inside a string or a comment. The text is scanned at most
/// once for each of its changes, and not before somebody asks.
class TSpuManager
{
public:
    explicit TSpuManager(TSpuTextSource strings) : FPrimaryParser(std::move(strings)) {}

    /// To be called on every change of the text.
    void RequestProcess() { FIsProcessed = false; }
    void Process();
    bool PositionIsString(const TSpuPosition &position);
    bool PositionIsComment(const TSpuPosition &position);

private:
    TSpuPrimaryParser FPrimaryParser;
    bool FIsProcessed = false;
};
