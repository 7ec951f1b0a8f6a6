#include "client/uRowsOrigin.h"

#include <QStringList>
#include <algorithm>
#include <vector>

namespace {

// Cuts a statement into words and signs. Blanks and comments are passed over.
class TTokens
{
public:
    explicit TTokens(QStringView sql) : FSql(sql) {}

    /// A word in small letters, a number, or one sign, which for all that is quoted is the opening
    /// quote; empty at the end.
    QString Next()
    {
        while (SkipBlank() || SkipComment())
            ;
        const qsizetype from = FPos;
        if (FPos == FSql.size())
            return {};
        const QChar first = FSql[FPos++];
        if (first == u'\'' || first == u'"' || first == u'`')
            SkipQuoted(first);
        else if (first.isDigit())
            SkipWhile([](QChar c) { return c.isDigit() || c == u'.'; });
        else if (IsOfWord(first))
            SkipWhile(IsOfWord);
        else
            return first;
        return IsOfWord(first) ? FSql.sliced(from, FPos - from).toString().toLower() : first;
    }

private:
    static bool IsOfWord(QChar c) { return c.isLetterOrNumber() || c == u'_' || c == u'$'; }

    template <typename TIs>
    bool SkipWhile(TIs is)
    {
        const qsizetype from = FPos;
        while (FPos < FSql.size() && is(FSql[FPos]))
            ++FPos;
        return FPos > from;
    }
    bool SkipBlank()
    {
        return SkipWhile([](QChar c) { return c.isSpace(); });
    }

    bool Skip(QStringView text)
    {
        if (!FSql.sliced(FPos).startsWith(text))
            return false;
        FPos += text.size();
        return true;
    }
    bool SkipPast(QStringView text)
    {
        const qsizetype at = FSql.indexOf(text, FPos);
        FPos = at < 0 ? FSql.size() : at + text.size();
        return true;
    }

    bool SkipComment()
    {
        // The server executes what such a comment holds.
        if (Skip(u"/*!") || Skip(u"/*M!")) {
            SkipWhile([](QChar c) { return c.isDigit(); });
            return FIsExecuted = true;
        }
        if (FIsExecuted && Skip(u"*/"))
            return !(FIsExecuted = false);
        if (Skip(u"/*"))
            return SkipPast(u"*/");
        const QStringView rest = FSql.sliced(FPos);
        const bool isDashes = rest.startsWith(u"--") && (rest.size() == 2 || rest[2].isSpace());
        return (isDashes || rest.startsWith(u'#')) && SkipPast(u"\n");
    }

    // A doubled quote looks like the end of one text and the begin of the next, which does.
    void SkipQuoted(QChar quote)
    {
        while (FPos < FSql.size() && FSql[FPos] != quote)
            FPos += FSql[FPos] == u'\\' && quote != u'`' ? 2 : 1;
        FPos = std::min(FPos + 1, FSql.size());
    }

    const QStringView FSql;
    qsizetype FPos = 0;
    bool FIsExecuted = false; // inside a comment that is
};

enum TPlace {
    plElsewhere,
    plTables,    // where tables are named
    plCondition, // of a join, behind which further tables may come
    plSubquery,  // whose tables do not give rows to the result
};

// Follows a statement through its brackets.
class TPlaces
{
public:
    bool IsDerivedTable(const QString &token) const
    {
        static const QStringList queries = {"select", "values", "table", "with"};
        return FPlaces.back() == plTables && FBefore == u"(" && queries.contains(token);
    }

    void Pass(const QString &token)
    {
        if (token == u"(")
            FPlaces.push_back(PlaceOfBracket());
        else if (token != u")")
            FPlaces.back() = PlaceBehind(token);
        else if (FPlaces.size() > 1)
            FPlaces.pop_back();
        FIsBegun = FIsBegun || token != u"(";
        FBefore = token;
    }

private:
    TPlace PlaceOfBracket() const
    {
        if (!FIsBegun)
            return plElsewhere;
        return FPlaces.back() == plTables ? plTables : plSubquery;
    }

    TPlace PlaceBehind(const QString &token) const
    {
        static const QStringList opens = {"from", "join", "straight_join"};
        static const QStringList ends = {"select", "where", "having", "group", "order"};
        const TPlace place = FPlaces.back();
        const bool isName = FBefore == u"." || FBefore == u"@";
        if (place == plSubquery || isName)
            return place;
        if (opens.contains(token) || (place == plCondition && token == u","))
            return plTables;
        if (place == plTables && (token == u"on" || token == u"using"))
            return plCondition;
        // Hints of a table are given FOR ORDER BY.
        return ends.contains(token) && FBefore != u"for" ? plElsewhere : place;
    }

    std::vector<TPlace> FPlaces{plElsewhere}; // of each open bracket
    bool FIsBegun = false;                    // behind the brackets that hold the whole statement
    QString FBefore;
};

} // namespace

TRowsOrigin RowsOriginOf(const QString &sql)
{
    // An INSERT gives back rows of its one table.
    static const QStringList plain = {"select", "table", "values", "insert", "replace"};
    TTokens tokens(sql);
    TPlaces places;
    QString token = tokens.Next();
    for (; token == u"("; token = tokens.Next())
        places.Pass(token);
    if (token == u"with")
        return roSubquery;
    if (!plain.contains(token))
        return roOther;
    for (; !token.isEmpty(); token = tokens.Next()) {
        if (places.IsDerivedTable(token))
            return roSubquery;
        places.Pass(token);
    }
    return roTables;
}
