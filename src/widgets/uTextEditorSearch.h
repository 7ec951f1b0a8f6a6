#pragma once

#include <QRegularExpression>
#include <QString>
#include <optional>
#include <vector>

class TTextEditorControl;

struct TTextEditorSearchOptions
{
    QString Text;
    bool MatchCase = false;
    bool WholeWord = false;
    bool RegExp = false;

    bool operator==(const TTextEditorSearchOptions &) const = default;
};

struct TTextEditorSearchResult
{
    bool Found = false;
    bool Wrapped = false; // the search went on from the other end of the text
    int Index = 0;        // of the hit, from 1; 0 when the hits were not counted
    int Count = 0;        // of all hits, or of the replaced ones
    QString Error;        // why nothing could be searched; else empty
};

/// Finds and replaces in an editor. Searches a copy of the text that is made at the first search
/// and dropped with each change. Regular expressions are Perl's, "^" and "$" match at each line.
class TTextEditorSearch
{
public:
    explicit TTextEditorSearch(TTextEditorControl *control) : FControl(control) {}

    /// To be called at every change of the text.
    void TextChanged();
    /// Selects the next hit after the selection, or before it.
    TTextEditorSearchResult Find(const TTextEditorSearchOptions &options, bool forward);
    /// Selects the first hit from the start of the selection on, which may be the one selected.
    TTextEditorSearchResult FindFromSelection(const TTextEditorSearchOptions &options);
    /// Replaces the selection when it is a hit, and goes to the next hit.
    TTextEditorSearchResult Replace(const TTextEditorSearchOptions &options,
                                    const QString &replacement);
    /// Replaces all hits as one step of undo.
    TTextEditorSearchResult ReplaceAll(const TTextEditorSearchOptions &options,
                                       const QString &replacement);
    /// Whether a search at every key press is quick enough for this text.
    bool IsQuick() const;

private:
    struct THit
    {
        qsizetype Start; // UTF-16 units
        qsizetype Length;
    };

    bool Prepare(const TTextEditorSearchOptions &options, QString &error);
    std::optional<THit> Next(qsizetype from, QString &error) const;
    std::optional<THit> Previous(qsizetype before, QString &error) const;
    std::optional<THit> Last(qsizetype from, qsizetype before, QString &error) const;
    QRegularExpressionMatch MatchAt(qsizetype from, QString &error) const;
    void Select(THit hit);
    void CountHits(TTextEditorSearchResult &result, THit hit);
    qsizetype SelectionStart();
    qsizetype SelectionEnd();
    qsizetype UnitOf(qsizetype position) const;
    qsizetype PositionOf(qsizetype unit) const;
    QString Expand(const QString &replacement, const QRegularExpressionMatch &match) const;
    void PutInPlace(THit range, const QString &text);

    TTextEditorControl *FControl; // not owned
    QString FOriginal;
    std::optional<QString> FText; // FOriginal, made fit to be searched
    TTextEditorSearchOptions FOptions;
    QRegularExpression FPattern;
    std::optional<std::vector<qsizetype>> FHits; // starts; while they are countable
};
