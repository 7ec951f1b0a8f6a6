#include "sql/uDbmTableDDLParser.h"

#include "support/uException.h"
#include "support/uFormat.h"
#include "support/uRegExUtils.h"

#include <algorithm>

namespace {

constexpr auto Lines =
    QRegularExpression::MultilineOption | QRegularExpression::CaseInsensitiveOption;

TDbmReferenceOption ParseOption(const QString &text)
{
    static constexpr struct
    {
        const char16_t *Text;
        TDbmReferenceOption Option;
    } options[] = {{u"cascade", roCascade},
                   {u"set null", roSetNull},
                   {u"restrict", roRestrict},
                   {u"no action", roNoAction}};
    for (const auto &option : options)
        if (text.compare(option.Text, Qt::CaseInsensitive) == 0)
            return option.Option;
    return roUnknown;
}

void ParseClause(const QRegularExpressionMatch &match, int group, TDbmReferenceEntity &reference)
{
    if (match.lastCapturedIndex() <= group)
        return;
    const QString clause = match.captured(group);
    if (clause.compare(u"on delete", Qt::CaseInsensitive) == 0)
        reference.OnDelete = ParseOption(match.captured(group + 1));
    else if (clause.compare(u"on update", Qt::CaseInsensitive) == 0)
        reference.OnUpdate = ParseOption(match.captured(group + 1));
}

bool IsWord(const QString &name)
{
    const auto isWordChar = [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') ||
               c == u'_';
    };
    return !name.isEmpty() && std::all_of(name.begin(), name.end(), isWordChar);
}

/// The first match of a pattern that holds the name as %s and no group before it. A name of word
/// characters, which nearly all are, is found by one pattern for all names: compiling one for each
/// takes far longer than matching it. `group` gets what the groups behind the name count from.
QRegularExpressionMatch MatchName(const QString &ddl, const char *pattern, const QString &name,
                                  int &group)
{
    group = 0;
    if (!IsWord(name))
        return TRegExUtils::Match(ddl, TFormat::Format(pattern, {name}), Lines);
    group = 1;
    QRegularExpressionMatch found;
    TRegExUtils::ForEachMatch(
        ddl, TFormat::Format(pattern, {"(\\w+)"}),
        [&](const QRegularExpressionMatch &match) {
            if (!found.hasMatch() && match.capturedView(1).compare(name, Qt::CaseInsensitive) == 0)
                found = match;
        },
        Lines);
    return found;
}

const char *ColumnsPattern(TDbmIndexKind kind)
{
    static constexpr struct
    {
        TDbmIndexKind Kind;
        const char *Pattern;
    } patterns[] = {{ikUnique, "^\\s*unique key `%s` \\((.+)\\)"},
                    {ikIndex, "^\\s*key `%s` \\((.+)\\)"},
                    {ikFulltext, "^\\s*fulltext key `%s` \\((.+)\\)"},
                    {ikSpatial, "^\\s*spatial key `%s` \\((.+)\\)"}};
    for (const auto &pattern : patterns)
        if (pattern.Kind == kind)
            return pattern.Pattern;
    return nullptr;
}

QString ColumnsOf(const QString &ddl, const TDbmIndexEntity &index)
{
    if (index.IndexKind == ikPrimary)
        return TRegExUtils::Match(ddl, "^\\s*primary key.+\\((.+)\\)", Lines).captured(1);
    const char *const pattern = ColumnsPattern(index.IndexKind);
    if (!pattern)
        return {};
    int group = 0;
    const auto line = MatchName(ddl, pattern, index.IndexName, group);
    return line.captured(group + 1);
}

qint64 ToLength(const QString &digits)
{
    bool ok = false;
    const qint64 value = digits.toLongLong(&ok);
    if (!ok)
        throw EException(TFormat::Format("'%s' is not a valid integer value", {digits}));
    return value;
}

} // namespace

TDbmTableDDLParser::TDbmTableDDLParser(const TDbmServerFeatures *serverFeatures,
                                       const QString &databaseName, const QString &ddl)
    : FServerFeatures(serverFeatures), FDatabaseName(databaseName), FDDL(ddl)
{}

QList<TDbmFieldEntity> TDbmTableDDLParser::ParseColumns() const
{
    QList<TDbmFieldEntity> fields;
    TRegExUtils::ForEachMatch(
        FDDL, "^\\s*`(\\w+)`",
        [&](const QRegularExpressionMatch &match) {
            TDbmFieldEntity field;
            field.FieldName = match.captured(1);
            fields.append(field);
        },
        Lines);
    return fields;
}

bool TDbmTableDDLParser::TryParsePrimaryKey(TDbmIndexEntity &index) const
{
    if (!TRegExUtils::IsMatch(FDDL, "^\\s*primary key", Lines))
        return false;
    index = {};
    index.IndexName = "PRIMARY";
    index.IndexKind = ikPrimary;
    return true;
}

QList<TDbmIndexEntity> TDbmTableDDLParser::ParseUniqueKeys() const
{
    return ParseKeyLines("^\\s*unique key `(\\w+)`", ikUnique);
}

QList<TDbmIndexEntity> TDbmTableDDLParser::ParseKeys() const
{
    return ParseKeyLines("^\\s*key `(\\w+)`", ikIndex);
}

QList<TDbmIndexEntity> TDbmTableDDLParser::ParseKeyLines(const QString &pattern,
                                                         TDbmIndexKind kind) const
{
    QList<TDbmIndexEntity> indexes;
    TRegExUtils::ForEachMatch(
        FDDL, pattern,
        [&](const QRegularExpressionMatch &match) {
            TDbmIndexEntity index;
            index.IndexName = match.captured(1);
            index.IndexKind = kind;
            indexes.append(index);
        },
        Lines);
    return indexes;
}

QList<TDbmReferenceEntity> TDbmTableDDLParser::ParseForeignKeys() const
{
    QList<TDbmReferenceEntity> references;
    TRegExUtils::ForEachMatch(
        FDDL,
        "^\\s*constraint `(\\w+)` foreign key \\([`,\\s\\w]+\\) references `(\\w+)` "
        "\\([`,\\s\\w]+\\)\\s?(on delete|on update)?\\s?(set null|cascade|restrict|no action)?"
        "\\s?(on delete|on update)?\\s?(set null|cascade|restrict|no action)?",
        [&](const QRegularExpressionMatch &match) {
            TDbmReferenceEntity reference;
            reference.ReferenceName = match.captured(1);
            reference.RefDatabaseName = FDatabaseName;
            reference.RefTableName = match.captured(2);
            reference.OnDelete = roRestrict;
            reference.OnUpdate = roRestrict;
            ParseClause(match, 3, reference);
            ParseClause(match, 5, reference);
            references.append(reference);
        },
        Lines);
    return references;
}

QList<TDbmIndexColumnEntity>
TDbmTableDDLParser::ParseIndexColumns(const TDbmIndexEntity &index) const
{
    QList<TDbmIndexColumnEntity> columns;
    const QString text = ColumnsOf(FDDL, index);
    TRegExUtils::ForEachMatch(
        text, "(`\\w+`(?:\\(\\d+\\))?)", [&](const QRegularExpressionMatch &part) {
            const auto column = TRegExUtils::Match(part.captured(1), "`(\\w+)`(?:\\((\\d*)\\))?");
            if (!column.hasMatch())
                return;
            TDbmIndexColumnEntity entity;
            entity.Position = static_cast<qint32>(columns.size());
            entity.ColumnName = column.captured(1);
            if (column.lastCapturedIndex() >= 2)
                entity.Length = ToLength(column.captured(2));
            columns.append(entity);
        });
    return columns;
}

QList<TDbmReferenceColumnEntity>
TDbmTableDDLParser::ParseForeignKeyColumns(const QString &referenceName) const
{
    QList<TDbmReferenceColumnEntity> columns;
    int group = 0;
    const auto line = MatchName(FDDL,
                                "^\\s*constraint `%s` foreign key \\(([`,\\s\\w]+)\\) references "
                                "`\\w+` \\(([`,\\s\\w]+)\\)",
                                referenceName, group);
    if (line.lastCapturedIndex() < group + 2)
        return columns;
    const auto source = TRegExUtils::Match(line.captured(group + 1), "`(\\w+)`");
    const auto referenced = TRegExUtils::Match(line.captured(group + 2), "`(\\w+)`");
    if (!source.hasMatch() || !referenced.hasMatch())
        return columns;
    // One match has one group: a composite key shows its first pair.
    TDbmReferenceColumnEntity column;
    column.SrcColumnName = source.captured(1);
    column.RefColumnName = referenced.captured(1);
    columns.append(column);
    return columns;
}
