#include "tools/uDbmQueryTextResultFormatter.h"

#include "sql/uDbmSqlValueUtils.h"
#include "support/uFormat.h"
#include "support/uSet.h"
#include "support/uStringUtils.h"
#include "tools/uDatasetWalk.h"

#include <algorithm>
#include <numeric>

namespace {

const TSet<TFieldType> RightAligned = {ftSmallint, ftInteger, ftWord,     ftBoolean,  ftFloat,
                                       ftCurrency, ftAutoInc, ftLargeint, ftULargeint};

QStringList ColumnNames(const TDataSet &dataset)
{
    QStringList names;
    for (const auto &field : dataset.Fields())
        names += field->FieldName();
    return names;
}

void Widen(QList<int> &widths, const QStringList &cells)
{
    for (qsizetype i = 0; i < cells.size(); ++i)
        widths[i] = std::max(widths[i], static_cast<int>(cells[i].size()));
}

} // namespace

void TDbmQueryTextResultFormatter::Execute(const QString &queryText, TDataSet *dataset,
                                           QString &text, double elapsedSeconds) const
{
    QStringList lines = {queryText.trimmed()};
    qint64 count = 0;
    if (dataset && dataset->Active()) {
        lines += FormatTable(*dataset);
        count = dataset->RecordCount();
    }
    lines += TFormat::Format("Fetched %d row(s) for %.2f ms.", {count, elapsedSeconds * 1000});
    text = lines.join("\r\n");
}

QStringList TDbmQueryTextResultFormatter::FormatTable(TDataSet &dataset) const
{
    const QStringList names = ColumnNames(dataset);
    QList<int> widths(names.size(), 0);
    Widen(widths, names);
    TDatasetWalk walk(dataset);
    walk.ForEach([&](TDataSet &row) { Widen(widths, FormatRow(row)); });

    const qsizetype gaps = std::max<qsizetype>(names.size() - 1, 0) * Separator().size();
    const QString rule(std::accumulate(widths.begin(), widths.end(), gaps), u'-');
    QStringList lines = {rule, Join(dataset, names, widths), rule};
    walk.ForEach([&](TDataSet &row) { lines += Join(row, FormatRow(row), widths); });
    lines += rule;
    return lines;
}

QStringList TDbmQueryTextResultFormatter::FormatRow(const TDataSet &dataset) const
{
    QStringList cells;
    cells.reserve(dataset.FieldCount());
    for (const auto &field : dataset.Fields())
        cells += FormatCell(dataset, *field);
    return cells;
}

QString TDbmQueryTextResultFormatter::FormatCell(const TDataSet &dataset, const TField &field) const
{
    return field.IsBlob() && !FShowBlobText ? FormatBlobSize(dataset, field)
                                            : TDbmSqlValueUtils::FormatFieldValue(field, false);
}

QString TDbmQueryTextResultFormatter::FormatBlobSize(const TDataSet &dataset,
                                                     const TField &field) const
{
    const char *word = field.DataType() == ftMemo ? "TEXT" : "BLOB";
    if (field.IsNull())
        return TFormat::Format("%s: (NULL)", {word});
    const qint64 size = field.RawAt(dataset.RecNo()).size();
    return TFormat::Format("%s: %s", {word, TFormat::SizeText(size)});
}

QString TDbmQueryTextResultFormatter::Join(const TDataSet &dataset, const QStringList &cells,
                                           const QList<int> &widths) const
{
    QStringList padded;
    padded.reserve(cells.size());
    for (int i = 0; i < dataset.FieldCount(); ++i) {
        const bool right = RightAligned.Contains(dataset.FieldAt(i).DataType());
        padded += right ? TStringUtils::PadLeft(cells[i], widths[i])
                        : TStringUtils::PadRight(cells[i], widths[i]);
    }
    return padded.join(Separator());
}
