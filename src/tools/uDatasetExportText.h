#pragma once

#include "client/uMyQuery.h"
#include "support/uVariant.h"
#include "tools/uFormatSettings.h"

#include <QIODevice>
#include <QString>
#include <vector>

struct TDatasetExportTextOptions
{
    bool ColumnTitles = false;
    char16_t FieldDelimiter = u'\t';     // 0 for none
    char16_t TextQualifier = 0;          // 0 for none
    bool DefaultRegionalSettings = true; // the system's; the rest has no effect
    QString DateFormat;                  // as in TFormatSettings; empty for the system's
    char16_t DateDelimiter = 0;
    char16_t TimeDelimiter = 0;
    char16_t DecimalDelimiter = 0; // 0 for the system's: without one 1.5 would become 15
};

/// Walks a dataset and writes it to a stream, row by row. Leaves the dataset on its first row. A
/// query that is not open is run for it, and its rows are written as they come without being held.
class TDatasetExportBase
{
public:
    virtual ~TDatasetExportBase() = default;

    TDataSet *FDataset = nullptr; // not owned
    QIODevice *FStream = nullptr; // not owned

    /// Writes UTF-8 to FStream. Raises EException when the stream refuses, EMyError for a query.
    void Export();
    void ExportAsText(QString &text);

protected:
    virtual void WriteHeader(const std::vector<TFieldInfo> &fields) = 0;
    virtual void WriteFooter() = 0;
    virtual void WriteRecord(qint64 row) = 0;
    virtual void WriteRecord(const TMyQuery::TRowView &row) = 0;
    void Write(const QByteArray &bytes);

private:
    void ExportRows();
    void ExportStream(TMyQuery &query);
};

/// Delimited text. Deliberate: the delimiter follows every field, the last one too, and a qualifier
/// inside a text is not doubled. A NULL has no qualifier, an empty text has it twice.
class TDatasetExportText : public TDatasetExportBase
{
public:
    TDatasetExportTextOptions FOptions;
    TFormatSettings FSystem = TFormatSettings::System();

protected:
    void WriteHeader(const std::vector<TFieldInfo> &fields) override;
    void WriteFooter() override;
    void WriteRecord(qint64 row) override;
    void WriteRecord(const TMyQuery::TRowView &row) override;

private:
    enum TKind { ekPlain, ekText, ekDecimal, ekFloat, ekDate, ekBytes, ekOther };

    static TKind KindOf(const TFieldInfo &info);
    /// Room for so many bytes at the end of the block.
    char *Room(qsizetype size);
    void Append(QByteArrayView bytes);
    void AppendHex(QByteArrayView bytes);
    void Flush();
    bool TryAppendRaw(TKind kind, QByteArrayView bytes);
    void EndRecord();
    void AppendCell(size_t column, QByteArrayView bytes);
    void AppendValue(const TVariant &value, const TFieldInfo &field);
    void AppendText(QByteArrayView text);
    /// The digits as the server sent them, with the settings' decimal separator.
    void AppendNumber(QByteArrayView digits);
    void AppendDateTime(TDateTime value);
    void AppendDateTime(const TDateTimeParts &parts, bool hasDate, bool hasTime);
    void ReadSettings();

    std::vector<TFieldInfo> FFields;
    std::vector<TKind> FKinds;
    QByteArray FBlock;      // rows that the stream has not got yet
    qsizetype FUsed = 0;    // bytes of it
    qint64 FEditedRow = -1; // reads otherwise than the server sent it
    QByteArray FDelimiter, FQualifier;

    TFormatSettings fs;
    TDateTimeFormat FDateFormat, FTimeFormat;
    QByteArray FDecimal;
    QByteArray FDateTime;  // the one being made
    bool FHasPoint = true; // a decimal point, as the server sends
    bool FIsServersDates = false;
};
