#include "client/uCharsetCodec.h"

#include <QHash>
#include <QStringDecoder>
#include <QStringEncoder>
#include <array>
#include <iconv.h>

namespace {

using TCodec = std::shared_ptr<const TCharsetCodec>;

class TUtf8Codec : public TCharsetCodec
{
public:
    TUtf8Codec(const QByteArray &name, int maxBytes) : TCharsetCodec(name, maxBytes) {}

    bool TryDecode(QByteArrayView bytes, QString &text) const override
    {
        text = QString::fromUtf8(bytes);
        // U+FFFD may have been sent as such.
        return !text.contains(QChar::ReplacementCharacter) || text.toUtf8() == bytes;
    }

    bool TryEncode(QStringView text, QByteArray &bytes) const override
    {
        const qsizetype bad = FirstBad(text);
        bytes = text.left(bad).toUtf8();
        return bad == text.size();
    }

private:
    // Halves of a pair stand alone in no encoding, and the three-byte form has no place for pairs.
    qsizetype FirstBad(QStringView text) const
    {
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (!text[i].isSurrogate())
                continue;
            const bool pair =
                text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
            if (!pair || MaxBytes() < 4)
                return i;
            ++i;
        }
        return text.size();
    }
};

class TIconv
{
public:
    TIconv(const char *to, const char *from) : FHandle(::iconv_open(to, from)) {}
    ~TIconv()
    {
        if (Works())
            ::iconv_close(FHandle);
    }
    TIconv(const TIconv &) = delete;
    TIconv &operator=(const TIconv &) = delete;

    bool Works() const { return FHandle != reinterpret_cast<iconv_t>(-1); }

    /// Converts up to the first fault; gives the number of bytes taken.
    qsizetype Convert(QByteArrayView from, QByteArray &to) const
    {
        ::iconv(FHandle, nullptr, nullptr, nullptr, nullptr);
        char *in = const_cast<char *>(from.data());
        size_t inLeft = static_cast<size_t>(from.size());
        to.resize(from.size() * 2 + 16);
        size_t done = 0;
        for (;;) {
            char *out = to.data() + done;
            size_t outLeft = static_cast<size_t>(to.size()) - done;
            const size_t result = ::iconv(FHandle, &in, &inLeft, &out, &outLeft);
            done = static_cast<size_t>(to.size()) - outLeft;
            if (result != static_cast<size_t>(-1) || errno != E2BIG)
                break;
            to.resize(to.size() * 2);
        }
        to.resize(static_cast<qsizetype>(done));
        return from.size() - static_cast<qsizetype>(inLeft);
    }

private:
    iconv_t FHandle;
};

QString FromUtf16(const QByteArray &bytes)
{
    return QString(reinterpret_cast<const QChar *>(bytes.constData()), bytes.size() / 2);
}

QByteArrayView AsUtf16(QStringView text)
{
    return {reinterpret_cast<const char *>(text.utf16()), text.size() * 2};
}

/// Sets of one byte a character: by table, since iconv would be asked cell by cell.
class TTableCodec : public TCharsetCodec
{
public:
    TTableCodec(const QByteArray &name, const std::array<QChar, 256> &toUnicode)
        : TCharsetCodec(name, 1), FToUnicode(toUnicode)
    {
        for (int i = 255; i >= 0; --i)
            FFromUnicode.insert(FToUnicode[static_cast<size_t>(i)].unicode(), static_cast<char>(i));
        FFromUnicode.remove(QChar::ReplacementCharacter);
    }

    bool TryDecode(QByteArrayView bytes, QString &text) const override
    {
        text.resize(bytes.size());
        bool good = true;
        for (qsizetype i = 0; i < bytes.size(); ++i) {
            const QChar c = FToUnicode[static_cast<uchar>(bytes[i])];
            good = good && c != QChar::ReplacementCharacter;
            text[i] = c;
        }
        return good;
    }

    bool TryEncode(QStringView text, QByteArray &bytes) const override
    {
        bytes.resize(text.size());
        for (qsizetype i = 0; i < text.size(); ++i) {
            const auto found = FFromUnicode.constFind(text[i].unicode());
            if (found == FFromUnicode.constEnd()) {
                bytes.truncate(i);
                return false;
            }
            bytes[i] = *found;
        }
        return true;
    }

private:
    const std::array<QChar, 256> FToUnicode;
    QHash<char16_t, char> FFromUnicode;
};

class TIconvCodec : public TCharsetCodec
{
public:
    TIconvCodec(const QByteArray &name, int maxBytes, const char *encoding)
        : TCharsetCodec(name, maxBytes), FDecoder("UTF-16LE", encoding),
          FEncoder(encoding, "UTF-16LE")
    {}
    bool Works() const { return FDecoder.Works() && FEncoder.Works(); }

    bool TryDecode(QByteArrayView bytes, QString &text) const override
    {
        text.clear();
        bool good = true;
        while (!bytes.isEmpty()) {
            QByteArray utf16;
            bytes = bytes.sliced(FDecoder.Convert(bytes, utf16));
            text += FromUtf16(utf16);
            if (bytes.isEmpty())
                break;
            good = false;
            text += QChar(QChar::ReplacementCharacter);
            bytes = bytes.sliced(1);
        }
        return good;
    }

    bool TryEncode(QStringView text, QByteArray &bytes) const override
    {
        return FEncoder.Convert(AsUtf16(text), bytes) == text.size() * 2;
    }

private:
    TIconv FDecoder, FEncoder;
};

// What is a fullwidth backslash in the system's set is the plain one in the server's, which writes
// it so whenever it converts.
class TSjisCodec : public TIconvCodec
{
public:
    using TIconvCodec::TIconvCodec;
    bool TryDecode(QByteArrayView bytes, QString &text) const override
    {
        const bool good = TIconvCodec::TryDecode(bytes, text);
        text.replace(QChar(0xFF3C), u'\\');
        return good;
    }
};

struct TEncoding
{
    const char *Charset; // the server's name
    const char *Encoding;
    int MaxBytes;
};

// Where a set's name in the server differs from the system's, or differs from what it means there:
// latin1 is cp1252, sjis has a backslash and no yen sign, utf16 has the high byte first.
const TEncoding Encodings[] = {
    {"armscii8", "ARMSCII-8", 1},
    {"ascii", "US-ASCII", 1},
    {"big5", "CP950", 2},
    {"cp1250", "CP1250", 1},
    {"cp1251", "CP1251", 1},
    {"cp1256", "CP1256", 1},
    {"cp1257", "CP1257", 1},
    {"cp850", "CP850", 1},
    {"cp852", "CP852", 1},
    {"cp866", "CP866", 1},
    {"cp932", "CP932", 2},
    {"dec8", "DEC-MCS", 1},
    {"eucjpms", "EUC-JP-MS", 3},
    {"euckr", "UHC", 2},
    {"gb18030", "GB18030", 4},
    {"gb2312", "GB2312", 2},
    {"gbk", "GBK", 2},
    {"geostd8", "GEORGIAN-PS", 1},
    {"greek", "ISO-8859-7", 1},
    {"hebrew", "ISO-8859-8", 1},
    {"hp8", "HP-ROMAN8", 1},
    {"koi8r", "KOI8-R", 1},
    {"koi8u", "KOI8-U", 1},
    {"latin1", "CP1252", 1},
    {"latin2", "ISO-8859-2", 1},
    {"latin5", "ISO-8859-9", 1},
    {"latin7", "ISO-8859-13", 1},
    {"macce", "MAC-CENTRALEUROPE", 1},
    {"macroman", "MACINTOSH", 1},
    {"sjis", "CP932", 2},
    {"swe7", "SEN_850200_B", 1},
    {"tis620", "TIS-620", 1},
    {"ucs2", "UTF-16BE", 2},
    {"ujis", "EUC-JP-MS", 3},
    {"utf16", "UTF-16BE", 4},
    {"utf16le", "UTF-16LE", 4},
    {"utf32", "UTF-32BE", 4},
};

TCodec CreateTable(const TEncoding &encoding)
{
    const TIconv decoder("UTF-16LE", encoding.Encoding);
    if (!decoder.Works())
        return nullptr;
    // The server's latin1 is cp1252 whose five free places stand for themselves.
    const bool hasHoles = encoding.Charset != QByteArray("latin1");
    std::array<QChar, 256> toUnicode;
    for (int i = 0; i < 256; ++i) {
        const char byte = static_cast<char>(i);
        QByteArray utf16;
        const bool known = decoder.Convert({&byte, 1}, utf16) == 1 && utf16.size() == 2;
        const QChar free = hasHoles ? QChar(QChar::ReplacementCharacter) : QChar(i);
        toUnicode[static_cast<size_t>(i)] = known ? FromUtf16(utf16)[0] : free;
    }
    return std::make_shared<TTableCodec>(encoding.Charset, toUnicode);
}

// The system has no such set; these are the characters that the server makes of the bytes.
TCodec CreateKeybcs2()
{
    constexpr char16_t upper[] = u"ČüéďäĎŤčěĚĹÍľĺÄÁÉžŽôöÓůÚýÖÜŠĽÝŘťáíóúňŇŮÔšřŕŔ¼¡«»"
                                 u"░▒▓│┤╡╢╖╕╣║╗╝╜╛┐└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
                                 u"αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00A0";
    static_assert(std::size(upper) == 128 + 1);
    std::array<QChar, 256> toUnicode;
    for (size_t i = 0; i < 256; ++i)
        toUnicode[i] = i < 128 ? QChar(static_cast<char16_t>(i)) : QChar(upper[i - 128]);
    return std::make_shared<TTableCodec>("keybcs2", toUnicode);
}

TCodec CreateByIconv(const TEncoding &encoding)
{
    if (encoding.MaxBytes == 1)
        return CreateTable(encoding);
    std::shared_ptr<TIconvCodec> codec;
    if (encoding.Charset == QByteArray("sjis"))
        codec = std::make_shared<TSjisCodec>(encoding.Charset, 2, encoding.Encoding);
    else
        codec =
            std::make_shared<TIconvCodec>(encoding.Charset, encoding.MaxBytes, encoding.Encoding);
    return codec->Works() ? codec : nullptr;
}

} // namespace

TCodec TCharsetCodec::Create(const QByteArray &charset)
{
    const QByteArray name = charset.toLower();
    if (name == "utf8" || name == "utf8mb3")
        return std::make_shared<TUtf8Codec>(name, 3);
    // In a session of set "binary" the server converts nothing, and its own names are UTF-8.
    if (name == "utf8mb4" || name == "binary")
        return std::make_shared<TUtf8Codec>(name, 4);
    if (name == "keybcs2")
        return CreateKeybcs2();
    for (const TEncoding &encoding : Encodings) {
        if (name == encoding.Charset)
            return CreateByIconv(encoding);
    }
    return nullptr;
}

QString TCharsetCodec::Decode(QByteArrayView bytes) const
{
    QString text;
    TryDecode(bytes, text);
    return text;
}
