#include "client/uField.h"

#include "client/uDataSet.h"
#include "client/uFieldValue.h"

#include <climits>

TField::TField(TDataSet *dataset, int index, TFieldInfo info)
    : FDataSet(dataset), FIndex(index), FInfo(std::move(info))
{}

bool TField::IsNull() const
{
    return IsNullAt(FDataSet->RecNo());
}

TVariant TField::Value() const
{
    return ValueAt(FDataSet->RecNo());
}

QString TField::AsString() const
{
    return AsStringAt(FDataSet->RecNo());
}

qint64 TField::AsInteger(qint64 def) const
{
    return Value().ToInt(def);
}

QByteArray TField::AsBytes() const
{
    const qint64 row = FDataSet->RecNo();
    const TVariant *pending = PendingAt(row);
    if (!pending)
        return RawAt(row).toByteArray();
    return pending->IsBytes() ? pending->As<QByteArray>() : pending->ToString().toUtf8();
}

QString TField::DisplayText() const
{
    return DisplayTextAt(FDataSet->RecNo());
}

QString TField::EditText() const
{
    return EditTextAt(FDataSet->RecNo());
}

const TVariant *TField::PendingAt(qint64 row) const
{
    return FDataSet->PendingValue(row, FIndex);
}

bool TField::IsNullAt(qint64 row) const
{
    if (row < 0)
        return true;
    if (const TVariant *pending = PendingAt(row))
        return pending->IsNull();
    return FDataSet->FArena.IsNull(row, FIndex);
}

TVariant TField::ValueAt(qint64 row) const
{
    if (IsNullAt(row))
        return {};
    const TVariant *pending = PendingAt(row);
    return pending ? *pending : TFieldValue::Value(FInfo, RawAt(row));
}

QString TField::AsStringAt(qint64 row) const
{
    if (IsNullAt(row))
        return {};
    const TVariant *pending = PendingAt(row);
    return pending ? pending->ToString() : TFieldValue::Text(FInfo, RawAt(row));
}

QString TField::DisplayTextAt(qint64 row, int maxChars) const
{
    if (IsNullAt(row))
        return {};
    const TVariant *pending = PendingAt(row);
    if (!pending)
        return TFieldValue::DisplayText(FInfo, RawAt(row), maxChars);
    if (pending->IsBytes())
        return TFieldValue::DisplayText(FInfo, pending->As<QByteArray>(), maxChars);
    return pending->ToString().left(maxChars < 0 ? INT_MAX : maxChars);
}

QString TField::EditTextAt(qint64 row) const
{
    if (IsNullAt(row))
        return {};
    const TVariant *pending = PendingAt(row);
    if (!pending)
        return TFieldValue::EditText(FInfo, RawAt(row));
    return pending->IsBytes() ? TFieldValue::EditText(FInfo, pending->As<QByteArray>())
                              : pending->ToString();
}

QByteArrayView TField::RawAt(qint64 row) const
{
    return row < 0 ? QByteArrayView() : FDataSet->FArena.Cell(row, FIndex);
}

void TField::SetValue(const TVariant &value)
{
    FDataSet->SetFieldValue(FIndex, TFieldValue::FromEditor(FInfo, value));
}
