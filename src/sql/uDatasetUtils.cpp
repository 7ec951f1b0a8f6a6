#include "sql/uDatasetUtils.h"

#include "sql/uDbmSqlValueUtils.h"

void TDatasetUtils::ForEach(TDataSet &dataset, const std::function<void(TDataSet &)> &callback)
{
    for (dataset.First(); !dataset.Eof(); dataset.Next())
        callback(dataset);
}

QString TDatasetUtils::AsString(const TDataSet &dataset, const QString &name, const QString &def)
{
    const TField *field = dataset.FindField(name);
    return field ? field->AsString() : def;
}

int TDatasetUtils::AsInteger(const TDataSet &dataset, const QString &name, int def)
{
    return static_cast<int>(AsLargeint(dataset, name, def));
}

qint64 TDatasetUtils::AsLargeint(const TDataSet &dataset, const QString &name, qint64 def)
{
    const TField *field = dataset.FindField(name);
    return field ? field->Value().ToInt() : def;
}

TDateTime TDatasetUtils::AsDateTime(const TDataSet &dataset, const QString &name, TDateTime def)
{
    const TField *field = dataset.FindField(name);
    if (!field)
        return def;
    const TVariant value = field->Value();
    if (value.IsDateTime())
        return value.As<TDateTime>();
    if (value.IsNull())
        return {};
    // A fraction of a second makes the value a text; entities tell whole seconds.
    const QString text = value.ToString().section(u'.', 0, 0);
    const TVariant parsed = TDbmSqlValueUtils::ParseDateTime(text, TDateTime());
    return parsed.As<TDateTime>();
}

TVariant TDatasetUtils::AsVariant(const TDataSet &dataset, const QString &name, const TVariant &def)
{
    const TField *field = dataset.FindField(name);
    return field ? field->Value() : def;
}
