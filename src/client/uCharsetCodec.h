#pragma once

#include <QByteArray>
#include <QString>
#include <memory>

/// Text to and from the bytes of one MySQL character set. Nothing is replaced silently: what does
/// not fit is told. Not safe for two threads at a time.
class TCharsetCodec
{
public:
    /// `charset` is the server's name, such as utf8mb4 or cp1251. Gives nullptr for a character set
    /// that nothing here converts.
    static std::shared_ptr<const TCharsetCodec> Create(const QByteArray &charset);
    virtual ~TCharsetCodec() = default;

    const QByteArray &Name() const { return FName; }
    int MaxBytes() const { return FMaxBytes; } // of one character

    /// Gives false when bytes do not stand for characters; U+FFFD takes their place then.
    virtual bool TryDecode(QByteArrayView bytes, QString &text) const = 0;
    /// Gives false when a character does not exist in the set; `bytes` are those ahead of it.
    virtual bool TryEncode(QStringView text, QByteArray &bytes) const = 0;

    QString Decode(QByteArrayView bytes) const;

protected:
    TCharsetCodec(const QByteArray &name, int maxBytes) : FName(name), FMaxBytes(maxBytes) {}

private:
    const QByteArray FName;
    const int FMaxBytes;
};
