#pragma once

#include <QByteArray>
#include <QString>

/// Text of the editor to the bytes of its buffer and back, without a loss. The buffer holds UTF-8;
/// a surrogate without its partner, which UTF-8 has no form for, is held in the three bytes that
/// UTF-8 would give its code. NUL, a byte order mark and every kind of line end pass as they are.
class TTextEditorCodec
{
public:
    static QByteArray Encode(const QString &text);
    static QString Decode(QByteArrayView bytes);

    /// UTF-16 units that Decode makes of the bytes.
    static qsizetype UnitsOf(QByteArrayView bytes);
    /// Number of bytes at the front that make this many UTF-16 units; all bytes when there are
    /// fewer units.
    static qsizetype BytesOf(QByteArrayView bytes, qsizetype units);
};
