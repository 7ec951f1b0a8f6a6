#include "tools/uDatasetExportText.h"

#include "client/uDataSet.h"
#include "client/uField.h"
#include "client/uFieldValue.h"
#include "sql/uRawValues.h"
#include "support/uException.h"
#include "support/uFormat.h"
#include "tools/uDatasetWalk.h"

#include <QBuffer>
#include <QDateTime>
#include <QLocale>
#include <cstring>

namespace {

constexpr qsizetype BlockSize = 1 << 18; // bytes handed to the stream at once
constexpr char LineEnd[] = "\r\n";

QByteArray Encoded(char16_t c)
{
    return c == 0 ? QByteArray() : QString(QChar(c)).toUtf8();
}

} // namespace

void TDatasetExportBase::Export()
{
    auto *const query = dynamic_cast<TMyQuery *>(FDataset);
    if (query && !query->Active() && !query->SQL().isEmpty())
        ExportStream(*query);
    else
        ExportRows();
}

void TDatasetExportBase::ExportRows()
{
    const TDatasetWalk walk(*FDataset);
    std::vector<TFieldInfo> fields;
    for (const auto &field : FDataset->Fields())
        fields.push_back(field->Info());
    WriteHeader(fields);
    FDataset->First();
    for (qint64 row = 0; row < FDataset->RecordCount(); ++row)
        WriteRecord(row);
    WriteFooter();
    FDataset->First();
}

void TDatasetExportBase::ExportStream(TMyQuery &query)
{
    query.Stream([this](const std::vector<TFieldInfo> &fields) { WriteHeader(fields); },
                 [this](const TMyQuery::TRowView &row) {
                     WriteRecord(row);
                     return true;
                 });
    WriteFooter();
}

void TDatasetExportBase::ExportAsText(QString &text)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    FStream = &buffer;
    try {
        Export();
    } catch (...) {
        FStream = nullptr;
        throw;
    }
    FStream = nullptr;
    text = QString::fromUtf8(buffer.data());
}

void TDatasetExportBase::Write(const QByteArray &bytes)
{
    if (FStream->write(bytes) != bytes.size())
        throw EException(TFormat::Format("Cannot write: %s.", {FStream->errorString()}));
}

void TDatasetExportText::WriteHeader(const std::vector<TFieldInfo> &fields)
{
    FDelimiter = Encoded(FOptions.FieldDelimiter);
    FQualifier = Encoded(FOptions.TextQualifier);
    FFields = fields;
    FKinds.clear();
    FBlock.resize(BlockSize * 2);
    FUsed = 0;
    FEditedRow = !FDataset->Active() || FDataset->State() == dsBrowse ? -1 : FDataset->RecNo();
    for (const TFieldInfo &field : FFields)
        FKinds.push_back(KindOf(field));
    if (!FOptions.ColumnTitles)
        return;
    for (const TFieldInfo &field : FFields)
        Append(field.Name.toUtf8() + FDelimiter);
    Append(LineEnd);
}

void TDatasetExportText::WriteFooter()
{
    Flush();
    FBlock.clear();
}

void TDatasetExportText::WriteRecord(qint64 row)
{
    for (size_t i = 0; i < FFields.size(); ++i) {
        const TField &field = FDataset->FieldAt(static_cast<int>(i));
        if (row == FEditedRow && !field.IsNullAt(row))
            AppendValue(field.ValueAt(row), FFields[i]);
        else if (!field.IsNullAt(row))
            AppendCell(i, field.RawAt(row));
        Append(FDelimiter);
    }
    EndRecord();
}

void TDatasetExportText::WriteRecord(const TMyQuery::TRowView &row)
{
    for (size_t i = 0; i < FFields.size(); ++i) {
        if (row.Cells[i])
            AppendCell(i, {row.Cells[i], static_cast<qsizetype>(row.Lengths[i])});
        Append(FDelimiter);
    }
    EndRecord();
}

void TDatasetExportText::EndRecord()
{
    Append(LineEnd);
    if (FUsed >= BlockSize)
        Flush();
}

void TDatasetExportText::Flush()
{
    Write(QByteArray::fromRawData(FBlock.constData(), FUsed));
    FUsed = 0;
}

char *TDatasetExportText::Room(qsizetype size)
{
    if (FBlock.size() - FUsed < size)
        FBlock.resize(FUsed + size + BlockSize);
    return FBlock.data() + FUsed;
}

void TDatasetExportText::Append(QByteArrayView bytes)
{
    std::memcpy(Room(bytes.size()), bytes.data(), static_cast<size_t>(bytes.size()));
    FUsed += bytes.size();
}

void TDatasetExportText::AppendHex(QByteArrayView bytes)
{
    static constexpr char Digits[] = "0123456789ABCDEF";
    char *out = Room(bytes.size() * 2 + 2);
    *out++ = '0';
    *out++ = 'x';
    for (const char byte : bytes) {
        *out++ = Digits[static_cast<uchar>(byte) >> 4];
        *out++ = Digits[static_cast<uchar>(byte) & 15];
    }
    FUsed += bytes.size() * 2 + 2;
}

TDatasetExportText::TKind TDatasetExportText::KindOf(const TFieldInfo &info)
{
    switch (info.DataType) {
    case ftFloat:
        return ekFloat;
    case ftBCD:
        return ekDecimal;
    case ftDate:
    case ftDateTime:
        return ekDate;
    case ftBytes:
    case ftBlob:
    case ftGeometry:
        return ekBytes;
    case ftULargeint:
        return ekOther;
    default:
        break;
    }
    if (info.IsNumeric() && !info.IsShortYear())
        return ekPlain;
    return info.IsText && info.Codec->Name().startsWith("utf8") ? ekText : ekOther;
}

void TDatasetExportText::AppendCell(size_t column, QByteArrayView bytes)
{
    if (!TryAppendRaw(FKinds[column], bytes))
        AppendValue(TFieldValue::Value(FFields[column], bytes), FFields[column]);
}

// What comes out as the server sent it needs no value made of it.
bool TDatasetExportText::TryAppendRaw(TKind kind, QByteArrayView bytes)
{
    const bool isDefault = FOptions.DefaultRegionalSettings;
    switch (kind) {
    case ekPlain:
        if (bytes.size() > 1 && bytes[0] == '0')
            return false;
        Append(bytes);
        return true;
    case ekFloat:
        if (TRawValues::IsLongNumber(bytes))
            AppendText(bytes);
        else if (isDefault && TRawValues::IsPlainFloat(bytes))
            Append(bytes);
        else
            return false;
        return true;
    case ekDate:
        if (!isDefault || !TRawValues::IsOrdinaryDay(bytes) || bytes.size() > 19 ||
            bytes.endsWith(" 00:00:00"))
            return false;
        Append(bytes);
        return true;
    case ekText:
        if (TRawValues::CountUnits(bytes) < 0)
            return false;
        AppendText(bytes);
        return true;
    case ekDecimal:
        AppendText(bytes);
        return true;
    case ekBytes:
        if (!bytes.isEmpty())
            AppendHex(bytes);
        return true;
    case ekOther:
        break;
    }
    return false;
}

void TDatasetExportText::AppendText(QByteArrayView text)
{
    if (text.isEmpty())
        return;
    Append(FQualifier);
    Append(text);
    Append(FQualifier);
}

void TDatasetExportText::AppendValue(const TVariant &value, const TFieldInfo &field)
{
    if (value.IsDateTime())
        Append(DateTimeText(value.As<TDateTime>()).toUtf8());
    else if (value.IsString())
        AppendText(value.As<QString>().toUtf8());
    else if (value.IsBool())
        Append(value.As<bool>() ? "-1" : "0");
    else if (value.IsBytes())
        Append(TFieldValue::EditText(field, value.As<QByteArray>()).toUtf8());
    else if (value.IsDouble() && !FOptions.DefaultRegionalSettings)
        Append(value.ToString()
                   .replace(".", FOptions.DecimalDelimiter
                                     ? QString(QChar(FOptions.DecimalDelimiter))
                                     : QString())
                   .toUtf8());
    else
        Append(value.ToString().toUtf8());
}

QString TDatasetExportText::DateTimeText(TDateTime value) const
{
    if (FOptions.DefaultRegionalSettings)
        return TVariant(value).ToString();
    const QDateTime local = value.ToQDateTime();
    QString time = value.TimeText();
    if (FOptions.TimeDelimiter != 0)
        time.replace(u':', QChar(FOptions.TimeDelimiter));
    else
        time.remove(u':');
    if (!value.HasDate())
        return time;
    const QString date = DateText(local.date());
    return value.HasTime() ? date + u' ' + time : date;
}

QString TDatasetExportText::DateText(const QDate &date) const
{
    QString text;
    const QString &format = FOptions.DateFormat;
    for (qsizetype i = 0; i < format.size();) {
        const QChar c = format[i].toLower();
        qsizetype end = i;
        while (end < format.size() && format[end].toLower() == c)
            ++end;
        const int count = static_cast<int>(end - i);
        if (c == u'm' && count > 2) {
            text += QLocale::system().monthName(date.month(), count == 3 ? QLocale::ShortFormat
                                                                         : QLocale::LongFormat);
        } else if (c == u'd' || c == u'm') {
            const int part = c == u'd' ? date.day() : date.month();
            text += QString::number(part).rightJustified(qMin(count, 2), u'0');
        } else if (c == u'y') {
            const QString year = QString::number(date.year()).rightJustified(4, u'0');
            text += count <= 2 ? year.right(2) : year;
        } else if (c == u'/') {
            text +=
                FOptions.DateDelimiter ? QString(count, QChar(FOptions.DateDelimiter)) : QString();
        } else {
            text += format.mid(i, count);
        }
        i = end;
    }
    return text;
}
