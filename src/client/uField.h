#pragma once

#include "client/uFieldInfo.h"
#include "support/uVariant.h"

class TDataSet;

/// One column of a dataset. Reads the dataset's current row; the ...At operations read any row
/// without moving. A row being edited reads as it is going to be. Owned by its dataset.
class TField
{
public:
    TField(TDataSet *dataset, int index, TFieldInfo info);

    const QString &FieldName() const { return FInfo.Name; }
    TFieldType DataType() const { return FInfo.DataType; }
    const TFieldInfo &Info() const { return FInfo; }
    int Index() const { return FIndex; }
    /// Characters that the column's values need at most, by its type; 1 at least.
    int DisplayWidth() const { return FInfo.DisplayWidth(); }
    bool IsBlob() const { return FInfo.DataType == ftBlob || FInfo.DataType == ftMemo; }
    bool IsNumeric() const { return FInfo.IsNumeric(); }

    bool IsNull() const;
    /// The value by the rule that what is read can be written back: its natural kind when that
    /// holds it exactly, else the server's text, or bytes for binary columns.
    TVariant Value() const;
    /// The server's own text; bytes of binary columns as Latin-1; empty for NULL.
    QString AsString() const;
    qint64 AsInteger(qint64 def = 0) const;
    QByteArray AsBytes() const;
    /// What a grid shows: the server's own text; NULL is empty here and told by IsNull. Binary
    /// values show as 0x and digits, cut with their size when they are long.
    QString DisplayText() const;
    /// What an editor starts with: the whole text; binary values as 0x and all their digits, which
    /// SetValue takes back.
    QString EditText() const;

    bool IsNullAt(qint64 row) const;
    TVariant ValueAt(qint64 row) const;
    QString AsStringAt(qint64 row) const;
    /// At most `maxChars` characters and an ellipsis; -1 for the whole text.
    QString DisplayTextAt(qint64 row, int maxChars = -1) const;
    QString EditTextAt(qint64 row) const;
    /// The cell's bytes as they came from the server; empty for NULL. Valid until the row changes.
    QByteArrayView RawAt(qint64 row) const;

    /// Sets the value of the row being edited or appended. Raises EException when the dataset is
    /// not editing, the column cannot be changed, or a text stands for no value of a BIT column.
    void SetValue(const TVariant &value);

private:
    const TVariant *PendingAt(qint64 row) const;

    TDataSet *FDataSet;
    int FIndex;
    TFieldInfo FInfo;
};
