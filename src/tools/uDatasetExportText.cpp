#include "tools/uDatasetExportText.h"

#include "client/uDataSet.h"
#include "client/uField.h"
#include "support/uException.h"
#include "support/uFormat.h"
#include "tools/uDatasetWalk.h"

#include <QBuffer>
#include <QDateTime>
#include <QLocale>

namespace {

constexpr qsizetype BlockSize = 1 << 18; // bytes handed to the stream at once
constexpr char LineEnd[] = "\r\n";

QByteArray Encoded(char16_t c)
{
    return c == 0 ? QByteArray() : QString(QChar(c)).toUtf8();
}

bool IsAscii(QByteArrayView bytes)
{
    for (const char byte : bytes)
        if (byte & 0x80)
            return false;
    return true;
}

} // namespace

void TDatasetExportBase::Export()
{
    const TDatasetWalk walk(*FDataset);
    WriteHeader();
    FDataset->First();
    for (qint64 row = 0; row < FDataset->RecordCount(); ++row)
        WriteRecord(row);
    WriteFooter();
    FDataset->First();
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

void TDatasetExportText::WriteHeader()
{
    FDelimiter = Encoded(FOptions.FieldDelimiter);
    FQualifier = Encoded(FOptions.TextQualifier);
    FKinds.clear();
    FLine.resize(0);
    FLine.reserve(BlockSize * 2);
    for (int i = 0; i < FDataset->FieldCount(); ++i)
        FKinds.push_back(KindOf(FDataset->FieldAt(i)));
    if (!FOptions.ColumnTitles)
        return;
    for (int i = 0; i < FDataset->FieldCount(); ++i)
        FLine.append(FDataset->FieldAt(i).FieldName().toUtf8()).append(FDelimiter);
    FLine.append(LineEnd);
}

void TDatasetExportText::WriteFooter()
{
    Write(FLine);
    FLine.clear();
}

void TDatasetExportText::WriteRecord(qint64 row)
{
    for (int i = 0; i < FDataset->FieldCount(); ++i) {
        AppendField(FDataset->FieldAt(i), FKinds[static_cast<size_t>(i)], row);
        FLine.append(FDelimiter);
    }
    FLine.append(LineEnd);
    if (FLine.size() >= BlockSize) {
        Write(FLine);
        FLine.resize(0);
    }
}

// Whole numbers and characters in UTF-8 pass as the server sent them.
TDatasetExportText::TKind TDatasetExportText::KindOf(const TField &field)
{
    const TFieldInfo &info = field.Info();
    const bool isWhole = info.IsNumeric() && info.DataType != ftFloat && info.DataType != ftBCD;
    if (isWhole && !info.IsShortYear() && info.DataType != ftULargeint)
        return ekPlain;
    return info.IsText && info.Codec->Name().startsWith("utf8") ? ekText : ekOther;
}

void TDatasetExportText::AppendField(const TField &field, TKind kind, qint64 row)
{
    if (field.IsNullAt(row))
        return;
    const bool isEdited = FDataset->State() != dsBrowse && row == FDataset->RecNo();
    const QByteArrayView bytes = field.RawAt(row);
    const bool isPadded = bytes.size() > 1 && bytes[0] == '0';
    if (kind == ekPlain && !isEdited && !isPadded)
        FLine.append(bytes);
    else if (kind == ekText && !isEdited && IsAscii(bytes))
        AppendText(bytes);
    else
        AppendValue(field.ValueAt(row), field, row);
}

void TDatasetExportText::AppendText(QByteArrayView text)
{
    if (!text.isEmpty())
        FLine.append(FQualifier).append(text).append(FQualifier);
}

void TDatasetExportText::AppendValue(const TVariant &value, const TField &field, qint64 row)
{
    if (value.IsDateTime())
        FLine.append(DateTimeText(value.As<TDateTime>()).toUtf8());
    else if (value.IsString())
        AppendText(value.As<QString>().toUtf8());
    else if (value.IsBool())
        FLine.append(value.As<bool>() ? "-1" : "0");
    else if (value.IsBytes())
        FLine.append(field.EditTextAt(row).toUtf8());
    else if (value.IsDouble() && !FOptions.DefaultRegionalSettings)
        FLine.append(value.ToString()
                         .replace(".", FOptions.DecimalDelimiter
                                           ? QString(QChar(FOptions.DecimalDelimiter))
                                           : QString())
                         .toUtf8());
    else
        FLine.append(value.ToString().toUtf8());
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
