#include "tools/uDatasetExportText.h"

#include "client/uDataSet.h"
#include "client/uField.h"
#include "client/uFieldValue.h"
#include "sql/uRawValues.h"
#include "support/uException.h"
#include "support/uFormat.h"
#include "tools/uDatasetWalk.h"

#include <QBuffer>
#include <cstring>

namespace {

constexpr qsizetype BlockSize = 1 << 18; // bytes handed to the stream at once
constexpr char LineEnd[] = "\r\n";

QByteArray Encoded(char16_t c)
{
    return c == 0 ? QByteArray() : QString(QChar(c)).toUtf8();
}

int Number(QByteArrayView text, qsizetype at, qsizetype size)
{
    int value = 0;
    for (const char digit : text.sliced(at, size))
        value = value * 10 + (digit - '0');
    return value;
}

// Of a text like "2024-02-29 13:05:00", the time may be missing.
TDateTimeParts PartsOf(QByteArrayView text)
{
    TDateTimeParts parts{Number(text, 0, 4), Number(text, 5, 2), Number(text, 8, 2)};
    if (text.size() >= 19) {
        parts.Hour = Number(text, 11, 2);
        parts.Minute = Number(text, 14, 2);
        parts.Second = Number(text, 17, 2);
    }
    return parts;
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
    ReadSettings();
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

void TDatasetExportText::ReadSettings()
{
    fs = FSystem;
    if (!FOptions.DefaultRegionalSettings) {
        if (!FOptions.DateFormat.isEmpty())
            fs.ShortDateFormat = FOptions.DateFormat;
        fs.DateSeparator = QString::fromUtf8(Encoded(FOptions.DateDelimiter));
        fs.TimeSeparator = QString::fromUtf8(Encoded(FOptions.TimeDelimiter));
        if (FOptions.DecimalDelimiter != 0)
            fs.DecimalSeparator = QChar(FOptions.DecimalDelimiter);
    }
    FDateFormat = TDateTimeFormat::OfDate(fs);
    FTimeFormat = TDateTimeFormat::OfTime(fs);
    FDecimal = fs.DecimalSeparator.toUtf8();
    FHasPoint = FDecimal == ".";
    FIsServersDates = fs.IsServers();
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

// What the server's text tells of itself needs no value made of it.
bool TDatasetExportText::TryAppendRaw(TKind kind, QByteArrayView bytes)
{
    switch (kind) {
    case ekPlain:
        if (bytes.size() > 1 && bytes[0] == '0')
            return false;
        Append(bytes);
        return true;
    case ekFloat:
        if (!TRawValues::IsLongNumber(bytes) && !TRawValues::IsPlainFloat(bytes))
            return false;
        AppendNumber(bytes);
        return true;
    case ekDecimal:
        AppendNumber(bytes);
        return true;
    case ekDate:
        if (!TRawValues::IsOrdinaryDay(bytes) || (bytes.size() != 10 && bytes.size() != 19))
            return false;
        if (FIsServersDates && !bytes.endsWith(" 00:00:00"))
            Append(bytes);
        else
            AppendDateTime(PartsOf(bytes), true,
                           bytes.size() == 19 && !bytes.endsWith(" 00:00:00"));
        return true;
    case ekText:
        if (TRawValues::CountUnits(bytes) < 0)
            return false;
        AppendText(bytes);
        return true;
    case ekBytes:
        if (bytes.isEmpty())
            AppendText(bytes);
        else
            AppendHex(bytes);
        return true;
    case ekOther:
        break;
    }
    return false;
}

void TDatasetExportText::AppendText(QByteArrayView text)
{
    Append(FQualifier);
    Append(text);
    Append(FQualifier);
}

void TDatasetExportText::AppendNumber(QByteArrayView digits)
{
    const qsizetype point = FHasPoint ? -1 : digits.indexOf('.');
    if (point < 0) {
        Append(digits);
        return;
    }
    Append(digits.first(point));
    Append(FDecimal);
    Append(digits.sliced(point + 1));
}

void TDatasetExportText::AppendValue(const TVariant &value, const TFieldInfo &field)
{
    if (value.IsDateTime())
        AppendDateTime(value.As<TDateTime>());
    // A number that no variant holds exactly comes as a text.
    else if (field.IsNumeric() || value.IsDouble())
        AppendNumber(value.ToString().toUtf8());
    else if (value.IsString())
        AppendText(value.As<QString>().toUtf8());
    else if (value.IsBool())
        Append(value.As<bool>() ? "-1" : "0");
    else if (value.IsBytes())
        Append(TFieldValue::EditText(field, value.As<QByteArray>()).toUtf8());
    else
        Append(value.ToString().toUtf8());
}

void TDatasetExportText::AppendDateTime(TDateTime value)
{
    AppendDateTime(PartsOf(value.DateTimeText().toLatin1()), value.HasDate(),
                   value.HasTime() || !value.HasDate());
}

void TDatasetExportText::AppendDateTime(const TDateTimeParts &parts, bool hasDate, bool hasTime)
{
    FDateTime.clear();
    if (hasDate)
        FDateFormat.AppendTo(FDateTime, parts);
    if (hasDate && hasTime)
        FDateTime += ' ';
    if (hasTime)
        FTimeFormat.AppendTo(FDateTime, parts);
    Append(FDateTime);
}
