#include "tools/uCodeComplete.h"

#include "support/uException.h"
#include "support/uFormat.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

bool IsNamePart(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$' || c == u'.' || c.unicode() >= 0x80;
}

} // namespace

const QList<TCodeCompleteItem> &TCodeCompleteBaseManager::Items()
{
    if (!FIsItemsProcessed) {
        FItems.clear();
        FillItems(FItems);
        FIsItemsProcessed = true;
    }
    return FItems;
}

QList<TCodeCompleteItem> TCodeCompleteJsonReader::Read() const
{
    QFile file(FFileName);
    if (!file.open(QIODevice::ReadOnly))
        throw EException(
            TFormat::Format("Cannot open file \"%s\": %s.", {FFileName, file.errorString()}));
    QList<TCodeCompleteItem> items;
    for (const QJsonValue &value : ToJson(file.readAll()).value("items").toArray()) {
        const QJsonObject item = value.toObject();
        items.append(
            {item.value("display_value").toString(), item.value("insert_value").toString()});
    }
    return items;
}

QJsonObject TCodeCompleteJsonReader::ToJson(const QByteArray &text) const
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        throw EException(TFormat::Format("Cannot read file \"%s\": %s at byte %d.",
                                         {FFileName, error.errorString(), error.offset}));
    if (!document.object().value("items").isArray())
        throw EException(
            TFormat::Format("Cannot read file \"%s\": it has no list of items.", {FFileName}));
    return document.object();
}

void TJsonCodeCompleteManager::FillItems(QList<TCodeCompleteItem> &items)
{
    items = TCodeCompleteJsonReader(FFileName).Read();
}

TSynEditCodeCompleteManager::TSynEditCodeCompleteManager(TCodeCompleteEditor &editor)
    : FEditor(editor), FSpuManager([&editor] { return editor.Text(); })
{}

void TSynEditCodeCompleteManager::AppendManager(TCodeCompleteBaseManager *source)
{
    FManagerList.append(source);
}

void TSynEditCodeCompleteManager::AppendLiveSource(std::unique_ptr<TCodeCompleteLiveSource> source)
{
    FLiveSources.push_back(std::move(source));
}

QList<TCodeCompleteMatch> TSynEditCodeCompleteManager::Matches()
{
    ProcessItems();
    const QString line = FEditor.LineBeforeCaret();
    const QString input = InputOf(line);
    const QString path = PathOf(line);
    QList<TCodeCompleteMatch> matches;
    for (const TCodeCompleteItem &item : FItems)
        if (item.DisplayValue.startsWith(input, Qt::CaseInsensitive))
            matches.append({item, input.size()});
    if (!matches.isEmpty() && IsQuiet(input.size()))
        matches.clear();
    QList<TCodeCompleteItem> names;
    for (const auto &source : FLiveSources)
        source->Suggest(path, names);
    QList<TCodeCompleteMatch> live;
    for (const TCodeCompleteItem &item : names)
        live.append({item, path.size()});
    // A word may begin ahead of the quote that its end stands behind; a name begins where it does.
    if (!live.isEmpty() && IsQuiet(path.size()))
        live.clear();
    return path.contains(u'.') ? live + matches : matches + live;
}

void TSynEditCodeCompleteManager::ProcessItems()
{
    if (FIsProcessed)
        return;
    FItems.clear();
    for (TCodeCompleteBaseManager *source : FManagerList)
        FItems += source->Items();
    FIsProcessed = true;
}

bool TSynEditCodeCompleteManager::IsQuiet(qsizetype inputLength)
{
    const TSpuPosition position{FEditor.CaretLine(),
                                FEditor.CaretChar() - static_cast<qint32>(inputLength)};
    return FSpuManager.PositionIsString(position) || FSpuManager.PositionIsComment(position);
}

QString TSynEditCodeCompleteManager::InputOf(const QString &lineBeforeCaret)
{
    qsizetype start = lineBeforeCaret.size();
    while (start > 0 && !lineBeforeCaret[start - 1].isSpace())
        --start;
    return lineBeforeCaret.mid(start);
}

QString TSynEditCodeCompleteManager::PathOf(const QString &lineBeforeCaret)
{
    // Inside backticks everything belongs to a name, so an odd number of them opens one.
    const qsizetype size = lineBeforeCaret.size();
    qsizetype start = size;
    bool quoted = lineBeforeCaret.count(u'`') % 2 == 1;
    while (start > 0) {
        const QChar c = lineBeforeCaret[start - 1];
        if (c == u'`')
            quoted = !quoted;
        else if (!quoted && !IsNamePart(c))
            break;
        --start;
    }
    return lineBeforeCaret.mid(start);
}
