#include "sql/uDbmTableKeys.h"

#include "support/uStringUtils.h"

#include <algorithm>

namespace {

/// Walks one line of a table's text.
class TLineReader
{
public:
    explicit TLineReader(const QString &line) : FLine(line) {}

    void SkipBlanks()
    {
        while (FPos < FLine.size() && FLine[FPos].isSpace())
            ++FPos;
    }
    /// Takes the text if it comes next, blind to letter case.
    bool Take(QStringView text)
    {
        SkipBlanks();
        if (QStringView(FLine).mid(FPos, text.size()).compare(text, Qt::CaseInsensitive) != 0)
            return false;
        FPos += text.size();
        return true;
    }
    /// A name in backticks, in which a backtick is doubled.
    bool TakeName(QString &name)
    {
        if (!Take(u"`"))
            return false;
        name.clear();
        for (; FPos < FLine.size(); ++FPos) {
            if (FLine[FPos] != u'`') {
                name += FLine[FPos];
                continue;
            }
            ++FPos;
            if (FPos >= FLine.size() || FLine[FPos] != u'`')
                return true;
            name += u'`';
        }
        return false;
    }
    /// What is left, without the comma between the lines.
    QString Rest() const
    {
        const QString rest = FLine.mid(FPos).trimmed();
        return rest.endsWith(u',') ? rest.chopped(1).trimmed() : rest;
    }
    qint64 TakeNumber()
    {
        qint64 number = 0;
        for (; FPos < FLine.size() && FLine[FPos].isDigit(); ++FPos)
            number = number * 10 + FLine[FPos].digitValue();
        return number;
    }

private:
    const QString &FLine;
    qsizetype FPos = 0;
};

bool TakeIndexColumn(TLineReader &reader, TDbmIndexColumnEntity &column)
{
    if (!reader.TakeName(column.ColumnName))
        return false;
    if (reader.Take(u"(")) {
        column.Length = reader.TakeNumber();
        if (!reader.Take(u")"))
            return false;
    }
    if (!reader.Take(u"ASC"))
        column.Descending = reader.Take(u"DESC");
    return true;
}

bool TakeIndexColumns(TLineReader &reader, QList<TDbmIndexColumnEntity> &columns)
{
    if (!reader.Take(u"("))
        return false;
    do {
        TDbmIndexColumnEntity column;
        column.Position = static_cast<qint32>(columns.size());
        if (!TakeIndexColumn(reader, column))
            return false;
        columns.append(column);
    } while (reader.Take(u","));
    return reader.Take(u")");
}

bool TryParseIndex(const QString &line, TDbmWholeIndex &index)
{
    static constexpr struct
    {
        const char16_t *Words;
        TDbmIndexKind Kind;
    } kinds[] = {{u"PRIMARY KEY", ikPrimary},
                 {u"UNIQUE KEY", ikUnique},
                 {u"FULLTEXT KEY", ikFulltext},
                 {u"SPATIAL KEY", ikSpatial},
                 {u"KEY", ikIndex}};
    TLineReader reader(line);
    for (const auto &kind : kinds) {
        if (!reader.Take(kind.Words))
            continue;
        index.Index.IndexKind = kind.Kind;
        index.Index.IndexName = "PRIMARY";
        if (kind.Kind != ikPrimary && !reader.TakeName(index.Index.IndexName))
            return false;
        index.IsWhole = TakeIndexColumns(reader, index.Columns);
        if (index.IsWhole)
            index.Index.Options = reader.Rest();
        return true;
    }
    return false;
}

bool TakeNames(TLineReader &reader, QStringList &names)
{
    if (!reader.Take(u"("))
        return false;
    QString name;
    do {
        if (!reader.TakeName(name))
            return false;
        names.append(name);
    } while (reader.Take(u","));
    return reader.Take(u")");
}

TDbmReferenceOption TakeOption(TLineReader &reader)
{
    static constexpr struct
    {
        const char16_t *Words;
        TDbmReferenceOption Option;
    } options[] = {{u"RESTRICT", roRestrict},
                   {u"CASCADE", roCascade},
                   {u"SET NULL", roSetNull},
                   {u"NO ACTION", roNoAction}};
    for (const auto &option : options)
        if (reader.Take(option.Words))
            return option.Option;
    return roUnknown;
}

bool TryParseReference(const QString &line, const QString &databaseName,
                       TDbmWholeReference &reference)
{
    TLineReader reader(line);
    TDbmReferenceEntity &entity = reference.Reference;
    QStringList sources;
    QStringList targets;
    if (!reader.Take(u"CONSTRAINT") || !reader.TakeName(entity.ReferenceName) ||
        !reader.Take(u"FOREIGN KEY") || !TakeNames(reader, sources) ||
        !reader.Take(u"REFERENCES") || !reader.TakeName(entity.RefTableName))
        return false;
    entity.RefDatabaseName = databaseName;
    if (reader.Take(u".")) {
        entity.RefDatabaseName = entity.RefTableName;
        if (!reader.TakeName(entity.RefTableName))
            return false;
    }
    if (!TakeNames(reader, targets) || sources.size() != targets.size())
        return false;
    // A clause that the server leaves out is not RESTRICT on every kind of server.
    for (int clause = 0; clause < 2; ++clause) {
        if (reader.Take(u"ON DELETE"))
            entity.OnDelete = TakeOption(reader);
        else if (reader.Take(u"ON UPDATE"))
            entity.OnUpdate = TakeOption(reader);
    }
    for (qsizetype i = 0; i < sources.size(); ++i) {
        TDbmReferenceColumnEntity column;
        column.Position = static_cast<qint32>(i);
        column.SrcColumnName = sources[i];
        column.RefColumnName = targets[i];
        reference.Columns.append(column);
    }
    return true;
}

} // namespace

bool TDbmWholeIndex::IdentifiesRows() const
{
    const bool unique = Index.IndexKind == ikPrimary || Index.IndexKind == ikUnique;
    return unique && IsWhole && !Columns.isEmpty() &&
           std::none_of(Columns.begin(), Columns.end(),
                        [](const TDbmIndexColumnEntity &column) { return column.Length != 0; });
}

QStringList TDbmWholeIndex::ColumnNames() const
{
    QStringList names;
    for (const TDbmIndexColumnEntity &column : Columns)
        names.append(column.ColumnName);
    return names;
}

TDbmTableKeys TDbmTableKeys::Parse(const QString &databaseName, const QString &ddl)
{
    TDbmTableKeys keys;
    for (const QString &line : TStringUtils::Lines(ddl)) {
        TDbmWholeIndex index;
        TDbmWholeReference reference;
        if (TryParseIndex(line, index))
            keys.FIndexes.append(index);
        else if (TryParseReference(line, databaseName, reference))
            keys.FReferences.append(reference);
    }
    return keys;
}

bool TDbmTableKeys::TryGetRowKey(QStringList &columnNames) const
{
    for (const TDbmWholeIndex &index : FIndexes) {
        if (index.Index.IndexKind != ikPrimary || !index.IdentifiesRows())
            continue;
        columnNames = index.ColumnNames();
        return true;
    }
    return false;
}

bool TDbmTableKeys::TryGetIndex(const QString &name, TDbmWholeIndex &index) const
{
    for (const TDbmWholeIndex &candidate : FIndexes) {
        if (candidate.Index.IndexName.compare(name, Qt::CaseInsensitive) != 0)
            continue;
        index = candidate;
        return candidate.IsWhole;
    }
    return false;
}

bool TDbmTableKeys::TryGetReference(const QString &name, TDbmWholeReference &reference) const
{
    for (const TDbmWholeReference &candidate : FReferences) {
        if (candidate.Reference.ReferenceName.compare(name, Qt::CaseInsensitive) != 0)
            continue;
        reference = candidate;
        return true;
    }
    return false;
}
