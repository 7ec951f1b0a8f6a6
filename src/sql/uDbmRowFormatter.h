#pragma once

#include "client/uMyQuery.h"

/// What a statement of rows asks of the session that runs it, so that every value is stored as it
/// was read. Flags.
enum TDbmRowNeed {
    rnZeroAutoIncrement = 1, // 0 in an AUTO_INCREMENT column, which counts up by default
    rnLaxDates = 2,          // a zero date or a day that the calendar does not have
    rnLaxEnums = 4,          // the empty value that stands for a refused member
    rnUtcTimes = 8,          // a TIMESTAMP, which is written as its moment's time in UTC
    rnPlainQuotes = 16       // backslashes that escape, double quotes that enclose texts
};

/// Rows of a table as the value lists of an INSERT, made of the bytes that the server sent. Gives
/// the same text as TDbmSqlValueUtils::FormatVariantValue on each cell, as UTF-8, without making
/// a value of every cell. Bytes that a script file cannot hold come as hexadecimal digits with
/// their character set. One stream of rows at a time.
class TDbmRowFormatter
{
public:
    struct TColumn
    {
        bool IsKnown = true;        // false: nothing is written for it but the comma
        bool IsGenerated = false;   // computed by the server, which takes no other value
        bool IsMoment = false;      // TIMESTAMP, whose text depends on the session's time zone
        bool IsNullable = true;     // false: NULL is written as the default
        bool HasEmptyMember = true; // of ENUM: the empty text is a value like any other
    };

    /// One column for each field.
    TDbmRowFormatter(std::vector<TFieldInfo> fields, std::vector<TColumn> columns);

    /// For statements that are read in a character set which does not have every character: a text
    /// that it cannot hold is written in digits.
    void SetStatementCodec(std::shared_ptr<const TCharsetCodec> codec)
    {
        FCodec = std::move(codec);
    }
    /// Appends "(", the values and ")". Gives the characters appended, counted as UTF-16 units.
    qint64 Append(const TMyQuery::TRowView &row, QByteArray &text);
    /// TDbmRowNeed flags of the rows since the last TakeNeeds.
    int TakeNeeds() { return std::exchange(FNeeds, 0); }

private:
    enum TKind { rkInteger, rkFloat, rkPlain, rkDate, rkBytes, rkUtf8, rkOther };

    static TKind KindOf(const TFieldInfo &field);
    qsizetype LargestSize(const TMyQuery::TRowView &row) const;
    char *PutCell(size_t column, QByteArrayView bytes, char *out);
    char *PutInteger(size_t column, QByteArrayView bytes, char *out);
    char *PutFloat(size_t column, QByteArrayView bytes, char *out);
    char *PutDate(size_t column, QByteArrayView bytes, char *out);
    char *PutText(size_t column, QByteArrayView bytes, char *out);
    bool Fits(QByteArrayView bytes) const;
    char *PutValue(size_t column, QByteArrayView bytes, char *out);

    const std::vector<TFieldInfo> FFields;
    const std::vector<TColumn> FColumns;
    std::vector<TKind> FKinds;
    std::shared_ptr<const TCharsetCodec> FCodec; // nullptr when statements hold everything
    qint64 FExtraBytes = 0;                      // of the row at hand, over its UTF-16 units
    int FNeeds = 0;
};
