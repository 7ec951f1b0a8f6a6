#include "sql/uDbmEngineFormatters.h"

#include "sql/uDatasetUtils.h"

namespace {

bool Is(const QString &text, const char *word)
{
    return text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

TDbmEngineSupport ParseSupport(const QString &text)
{
    static constexpr struct
    {
        const char *Word;
        TDbmEngineSupport Support;
    } words[] = {{"YES", esYes}, {"DEFAULT", esDefault}, {"DISABLED", esDisabled}, {"NO", esNo}};
    for (const auto &word : words)
        if (Is(text, word.Word))
            return word.Support;
    return esUnknown;
}

} // namespace

QString TDbmEngineFormatters::FormatSelect() const
{
    return FServerFeatures->ISEngines ? "SELECT * FROM information_schema.engines" : "SHOW ENGINES";
}

TDbmEngineEntity TDbmEngineFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto text = [&](const char *name) { return TDatasetUtils::AsString(row, name, {}); };
    TDbmEngineEntity entity;
    // The first column of the SHOW form had another name once.
    entity.EngineName =
        (FServerFeatures->ISEngines ? row.FieldByName("ENGINE") : row.FieldAt(0)).AsString();
    entity.Support = ParseSupport(text("SUPPORT"));
    entity.Comment = text("COMMENT");
    if (Is(text("TRANSACTIONS"), "YES"))
        entity.Options.Include(eoTransactions);
    if (Is(text("XA"), "YES"))
        entity.Options.Include(eoXA);
    if (Is(text("SAVEPOINTS"), "YES"))
        entity.Options.Include(eoSavePoints);
    return entity;
}
