#pragma once

#include "client/uFieldInfo.h"
#include "support/uVariant.h"

#include <QByteArrayView>

/// What the bytes of a cell mean, by the column they belong to. For cells that are not NULL; the
/// cells of a dataset and of a stream are read alike.
class TFieldValue
{
public:
    /// The natural kind when the literal made of it brings the same value back, else the server's
    /// text, or bytes where there is no exact text. An empty value of a binary column is an empty
    /// string, since 0x without digits is no literal for the server.
    static TVariant Value(const TFieldInfo &info, QByteArrayView bytes);
    /// The server's text; BIT as a decimal number, binary columns with a character for each byte.
    static QString Text(const TFieldInfo &info, QByteArrayView bytes);
    /// For a grid: binary columns as 0x and digits, cut with the size when long.
    static QString DisplayText(const TFieldInfo &info, QByteArrayView bytes, int maxChars);
    /// For an editor: Text, but binary columns as 0x and all digits.
    static QString EditText(const TFieldInfo &info, QByteArrayView bytes);
    /// The bytes of a 0x text as EditText makes it. Gives false for any other text.
    static bool TryParseHex(const QString &text, QByteArray &bytes);
    /// What a user typed, as a value for the column. Raises EException when it has none.
    static TVariant FromEditor(const TFieldInfo &info, const TVariant &typed);
};
