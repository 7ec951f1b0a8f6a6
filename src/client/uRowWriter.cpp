#include "client/uRowWriter.h"

#include "client/uFieldValue.h"
#include "support/uStringUtils.h"

#include <QStringList>

namespace {

const TVariant *Changed(const TDataSet::TChanges &changes, int column)
{
    for (const auto &[index, value] : changes) {
        if (index == column)
            return &value;
    }
    return nullptr;
}

// What makes the server give a number of its own.
bool AsksForNumber(const TVariant *value)
{
    return !value || value->IsNull() || value->ToString() == u"0" || value->ToString().isEmpty();
}

} // namespace

TRowWriter::TRowWriter(const TTableKey &key, const TDataSet &dataset, bool noBackslashEscapes)
    : FKey(key), FDataset(dataset), FNoBackslashEscapes(noBackslashEscapes)
{}

QString TRowWriter::Name(int column) const
{
    return QuotedIdentifier(FDataset.FieldAt(column).Info().OrgName);
}

QString TRowWriter::TableName() const
{
    return QuotedIdentifier(FKey.Database) + u'.' + QuotedIdentifier(FKey.Table);
}

QString TRowWriter::QuotedText(const QString &text) const
{
    QString quoted = text;
    if (!FNoBackslashEscapes) {
        quoted.replace(u'\\', QStringLiteral("\\\\"));
        quoted.replace(QChar(0), QStringLiteral("\\0"));
        quoted.replace(QChar(26), QStringLiteral("\\Z"));
    }
    return u'\'' + quoted.replace(u'\'', QStringLiteral("''")) + u'\'';
}

QString TRowWriter::Literal(const TVariant &value) const
{
    if (value.IsNull())
        return "NULL";
    if (value.IsBytes()) {
        const QByteArray &bytes = value.As<QByteArray>();
        return bytes.isEmpty() ? "''" : "0x" + TStringUtils::BytesToHex(bytes);
    }
    if (value.IsInt() || value.IsUInt())
        return value.ToString();
    if (value.IsBool())
        return value.As<bool>() ? "1" : "0";
    if (value.IsDouble()) // 17 digits bring every double back
        return u'\'' + QString::number(value.As<double>(), 'g', 17) + u'\'';
    return QuotedText(value.ToString());
}

QString TRowWriter::Where(const std::function<QString(int column)> &literal) const
{
    QStringList tests;
    for (const int column : FKey.Columns)
        tests += Name(column) + " = " + literal(column);
    return " WHERE " + tests.join(" AND ");
}

// By the value on the server, not by one that is pending.
QString TRowWriter::WhereRow(qint64 row) const
{
    return Where([this, row](int column) {
        const TField &field = FDataset.FieldAt(column);
        return Literal(TFieldValue::Value(field.Info(), field.RawAt(row)));
    });
}

QString TRowWriter::UpdateText(qint64 row, const TDataSet::TChanges &changes) const
{
    QStringList sets;
    for (const auto &[column, value] : changes)
        sets += Name(column) + " = " + Literal(value);
    return "UPDATE " + TableName() + " SET " + sets.join(", ") + WhereRow(row) + " LIMIT 1";
}

QString TRowWriter::InsertText(const TDataSet::TChanges &changes) const
{
    QStringList names, literals;
    for (const auto &[column, value] : changes) {
        names += Name(column);
        literals += Literal(value);
    }
    return "INSERT INTO " + TableName() + " (" + names.join(", ") + ") VALUES (" +
           literals.join(", ") + u')';
}

QString TRowWriter::DeleteText(qint64 row) const
{
    return "DELETE FROM " + TableName() + WhereRow(row) + " LIMIT 1";
}

QList<int> TRowWriter::TableColumns() const
{
    QList<int> columns;
    for (const auto &field : FDataset.Fields()) {
        if (!field->Info().OrgName.isEmpty())
            columns += field->Index();
    }
    return columns;
}

QString TRowWriter::Select(const QString &where) const
{
    QStringList names;
    for (const int column : TableColumns())
        names += Name(column);
    return "SELECT " + names.join(", ") + " FROM " + TableName() + where;
}

QString TRowWriter::ReadBackText(qint64 row, const TDataSet::TChanges &changes) const
{
    return Select(Where([&](int column) {
        const TField &field = FDataset.FieldAt(column);
        const TVariant *value = Changed(changes, column);
        return Literal(value ? *value : TFieldValue::Value(field.Info(), field.RawAt(row)));
    }));
}

QString TRowWriter::ReadBackText(const TDataSet::TChanges &changes, quint64 insertId) const
{
    return Select(Where([&](int column) -> QString {
        const TVariant *value = Changed(changes, column);
        if (FDataset.FieldAt(column).Info().IsAutoIncrement() && AsksForNumber(value))
            return QString::number(insertId);
        return value ? Literal(*value) : "DEFAULT(" + Name(column) + u')';
    }));
}
