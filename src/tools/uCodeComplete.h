#pragma once

#include "tools/uSpuManager.h"

#include <QList>

class QJsonObject;

/// One candidate: what the list shows and what the editor gets.
struct TCodeCompleteItem
{
    QString DisplayValue;
    QString InsertValue;
};

/// A source of candidates. Filled when it is first asked and never again.
class TCodeCompleteBaseManager
{
public:
    virtual ~TCodeCompleteBaseManager() = default;

    /// Raises what the filler raises; it is asked again then.
    const QList<TCodeCompleteItem> &Items();

protected:
    virtual void FillItems(QList<TCodeCompleteItem> &items) = 0;

private:
    QList<TCodeCompleteItem> FItems;
    bool FIsItemsProcessed = false;
};

/// A source whose candidates hang on what stands before the caret, asked each time a list opens or
/// is narrowed. Nothing is sent to a server for it.
class TCodeCompleteLiveSource
{
public:
    virtual ~TCodeCompleteLiveSource() = default;
    /// `path` is the name before the caret as far as it is typed, with its points and backticks,
    /// such as "shop.cust". What is inserted takes the place of the whole path.
    virtual void Suggest(const QString &path, QList<TCodeCompleteItem> &items) = 0;
};

/// The editor as completion sees it.
class TCodeCompleteEditor
{
public:
    virtual ~TCodeCompleteEditor() = default;
    virtual QString Text() const = 0;
    virtual QString LineBeforeCaret() const = 0;
    virtual qint32 CaretLine() const = 0; // counts from 1, as the next does
    virtual qint32 CaretChar() const = 0;
};

/// A file of candidates: an object with one member `items`, an array of objects with the members
/// `display_value` and `insert_value`.
class TCodeCompleteJsonReader
{
public:
    explicit TCodeCompleteJsonReader(const QString &fileName) : FFileName(fileName) {}
    /// In the order of the file. Raises EException for a missing or malformed file; a missing
    /// member reads as an empty text.
    QList<TCodeCompleteItem> Read() const;

private:
    QJsonObject ToJson(const QByteArray &text) const;
    const QString FFileName;
};

class TJsonCodeCompleteManager : public TCodeCompleteBaseManager
{
public:
    explicit TJsonCodeCompleteManager(const QString &fileName) : FFileName(fileName) {}

protected:
    void FillItems(QList<TCodeCompleteItem> &items) override;

private:
    const QString FFileName;
};

/// A candidate that fits what is typed.
struct TCodeCompleteMatch
{
    TCodeCompleteItem Item;
    qsizetype Replaces = 0; // characters before the caret that it takes the place of
};

/// Decides for one editor whether a list of candidates may open, and what is in it. The words of
/// the sources come in the order of the sources and of their items, unsorted; the names of the live
/// sources behind them, save behind a point, where only they can follow.
class TSynEditCodeCompleteManager
{
public:
    explicit TSynEditCodeCompleteManager(TCodeCompleteEditor &editor); // not owned

    void AppendManager(TCodeCompleteBaseManager *source); // not owned
    void AppendLiveSource(std::unique_ptr<TCodeCompleteLiveSource> source);
    /// To be called on every change of the text.
    void DataModified() { FSpuManager.RequestProcess(); }

    /// What begins with the word before the caret, blind to letter case. No word where it begins
    /// inside a string or a comment, and no name where the path does. Raises what a source raises.
    QList<TCodeCompleteMatch> Matches();
    /// The word before the caret. It begins behind white space: brackets and points belong to it.
    static QString InputOf(const QString &lineBeforeCaret);
    /// The name before the caret with its points and backticks.
    static QString PathOf(const QString &lineBeforeCaret);

private:
    void ProcessItems();
    bool IsQuiet(qsizetype inputLength);

    TCodeCompleteEditor &FEditor;
    TSpuManager FSpuManager;
    QList<TCodeCompleteBaseManager *> FManagerList;
    std::vector<std::unique_ptr<TCodeCompleteLiveSource>> FLiveSources;
    QList<TCodeCompleteItem> FItems; // of all sources
    bool FIsProcessed = false;
};
