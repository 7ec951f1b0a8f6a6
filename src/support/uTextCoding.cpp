#include "support/uTextCoding.h"

#include "support/uException.h"
#include "support/uFormat.h"

#include <QStringDecoder>
#include <QStringEncoder>
#include <cerrno>
#include <iconv.h>
#include <langinfo.h>
#include <locale.h>
#include <memory>

namespace {

const QByteArray Utf8Mark("\xEF\xBB\xBF");
const QByteArray Utf16LEMark("\xFF\xFE");
const QByteArray Utf16BEMark("\xFE\xFF");
// What a QString's memory holds.
const char *const NativeUtf16 = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "UTF-16LE" : "UTF-16BE";

QString ConfiguredCodePage;

/// The system's converter between two encodings. Stops at what it cannot convert.
class TIconv
{
public:
    TIconv(const char *to, const char *from) : FHandle(iconv_open(to, from)) {}
    ~TIconv()
    {
        if (IsOpen())
            iconv_close(FHandle);
    }
    TIconv(const TIconv &) = delete;
    TIconv &operator=(const TIconv &) = delete;

    bool IsOpen() const { return FHandle != reinterpret_cast<iconv_t>(-1); }

    /// Converts from `at` on and appends to `out`; gives the position where it had to stop.
    qsizetype Convert(QByteArrayView in, qsizetype at, QByteArray &out)
    {
        char *source = const_cast<char *>(in.data()) + at;
        size_t left = static_cast<size_t>(in.size() - at);
        while (Step(&source, &left, out))
            ;
        return in.size() - static_cast<qsizetype>(left);
    }

    /// Writes what an encoding with shift states needs at the end of a text.
    void Finish(QByteArray &out) { Step(nullptr, nullptr, out); }
    void Reset() { iconv(FHandle, nullptr, nullptr, nullptr, nullptr); }

private:
    // Gives true when there is more to do because the room was used up.
    bool Step(char **source, size_t *left, QByteArray &out)
    {
        const qsizetype used = out.size();
        out.resize(used + 64 + (left ? static_cast<qsizetype>(*left) * 2 : 0));
        char *target = out.data() + used;
        size_t room = static_cast<size_t>(out.size() - used);
        const size_t result = iconv(FHandle, source, left, &target, &room);
        const bool more = result == static_cast<size_t>(-1) && errno == E2BIG;
        out.resize(out.size() - static_cast<qsizetype>(room));
        return more;
    }

    iconv_t FHandle;
};

// The environment is asked anew: Qt switches the locale of the process to UTF-8 at its start.
QString LocaleCodePage()
{
    const locale_t locale = newlocale(LC_CTYPE_MASK, "", static_cast<locale_t>(nullptr));
    if (!locale)
        return "UTF-8";
    const QString name = QString::fromLatin1(nl_langinfo_l(CODESET, locale));
    freelocale(locale);
    return name;
}

bool IsUtf8Name(const QString &name)
{
    return name.compare(u"UTF-8", Qt::CaseInsensitive) == 0 ||
           name.compare(u"UTF8", Qt::CaseInsensitive) == 0;
}

// Kept, since scripts are decoded line by line.
TIconv &LegacyDecoder(const QString &page)
{
    thread_local QString openPage;
    thread_local std::unique_ptr<TIconv> decoder;
    if (!decoder || openPage != page) {
        decoder = std::make_unique<TIconv>(NativeUtf16, page.toLatin1().constData());
        openPage = page;
    }
    return *decoder;
}

[[noreturn]] void ThrowNoPlace(const QString &text, qsizetype at, const QString &encoding)
{
    const QChar high = text[at];
    const bool pair = high.isHighSurrogate() && at + 1 < text.size();
    const uint code = pair ? QChar::surrogateToUcs4(high, text[at + 1]) : high.unicode();
    throw EException(
        TFormat::Format("The character %s (U+%s) has no place in the encoding \"%s\".",
                        {text.mid(at, pair ? 2 : 1),
                         QString::number(code, 16).rightJustified(4, u'0').toUpper(), encoding}));
}

qsizetype FirstLoneSurrogate(const QString &text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate())
            continue;
        const bool pair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (!pair)
            return i;
        ++i;
    }
    return -1;
}

QByteArray EncodeUtf8(const QString &text)
{
    // A lone half of a pair would become a question mark without a word.
    const qsizetype lone = FirstLoneSurrogate(text);
    if (lone >= 0)
        ThrowNoPlace(text, lone, "UTF-8");
    return text.toUtf8();
}

QByteArray EncodeLegacy(const QString &text)
{
    const QString page = TTextCoding::LegacyCodePage();
    if (IsUtf8Name(page))
        return EncodeUtf8(text);
    TIconv converter(page.toLatin1().constData(), NativeUtf16);
    if (!converter.IsOpen())
        throw EException("Unknown code page \"" + page + "\".");
    const QByteArrayView in(reinterpret_cast<const char *>(text.constData()), text.size() * 2);
    QByteArray out;
    const qsizetype end = converter.Convert(in, 0, out);
    if (end < in.size())
        ThrowNoPlace(text, end / 2, page);
    converter.Finish(out);
    return out;
}

QString DecodeUtf16(const QByteArray &bytes, QStringConverter::Encoding encoding, bool &ok)
{
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless |
                                         QStringConverter::Flag::ConvertInitialBom);
    const QString text = decoder(bytes);
    ok = !decoder.hasError() && bytes.size() % 2 == 0;
    return text;
}

QByteArray EncodeUtf16(const QString &text, QStringConverter::Encoding encoding)
{
    QStringEncoder encoder(encoding);
    return encoder(text);
}

QString DecodeMarked(const QByteArray &bytes, TTextForm &form, bool &ok)
{
    form.Mark = true;
    if (bytes.startsWith(Utf8Mark)) {
        form.Encoding = teUtf8;
        return TTextCoding::DecodeUtf8(bytes.mid(Utf8Mark.size()), ok);
    }
    const bool little = bytes.startsWith(Utf16LEMark);
    form.Encoding = little ? teUtf16LE : teUtf16BE;
    return DecodeUtf16(bytes.mid(Utf16LEMark.size()),
                       little ? QStringConverter::Utf16LE : QStringConverter::Utf16BE, ok);
}

QString DecodeUnmarked(const QByteArray &bytes, TTextForm &form, bool &ok)
{
    form.Mark = false;
    form.Encoding = teUtf8;
    const QString text = TTextCoding::DecodeUtf8(bytes, ok);
    if (ok)
        return text;
    form.Encoding = teLegacy;
    return TTextCoding::DecodeLegacy(bytes, ok);
}

} // namespace

void TTextCoding::SetLegacyCodePage(const QString &name)
{
    if (!name.isEmpty() && !TIconv(NativeUtf16, name.toLatin1().constData()).IsOpen())
        throw EException("Unknown code page \"" + name + "\".");
    ConfiguredCodePage = name;
}

QString TTextCoding::LegacyCodePage()
{
    static const QString ofLocale = LocaleCodePage();
    return ConfiguredCodePage.isEmpty() ? ofLocale : ConfiguredCodePage;
}

QString TTextCoding::Decode(const QByteArray &bytes, TTextForm &form)
{
    const bool marked = bytes.startsWith(Utf8Mark) || bytes.startsWith(Utf16LEMark) ||
                        bytes.startsWith(Utf16BEMark);
    bool ok = false;
    const QString text = marked ? DecodeMarked(bytes, form, ok) : DecodeUnmarked(bytes, form, ok);
    if (!ok)
        form.Encoding = teUndecodable;
    form.LineEnds = DetectLineEnds(text, TTextForm().LineEnds);
    return text;
}

QString TTextCoding::DecodeLegacy(const QByteArray &bytes, bool &ok)
{
    const QString page = LegacyCodePage();
    if (IsUtf8Name(page))
        return DecodeUtf8(bytes, ok);
    TIconv &converter = LegacyDecoder(page);
    if (!converter.IsOpen())
        return DecodeUtf8(bytes, ok);
    converter.Reset();
    static const char16_t replacement = QChar::ReplacementCharacter;
    ok = true;
    QByteArray out;
    qsizetype at = converter.Convert(bytes, 0, out);
    while (at < bytes.size()) {
        ok = false;
        out.append(reinterpret_cast<const char *>(&replacement), sizeof replacement);
        converter.Reset();
        at = converter.Convert(bytes, at + 1, out);
    }
    return QString(reinterpret_cast<const QChar *>(out.constData()), out.size() / 2);
}

QString TTextCoding::DecodeUtf8(const QByteArray &bytes, bool &ok)
{
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless |
                                                       QStringConverter::Flag::ConvertInitialBom);
    const QString text = decoder(bytes);
    ok = !decoder.hasError();
    return text;
}

QByteArray TTextCoding::Encode(const QString &text, const TTextForm &form)
{
    switch (form.Encoding) {
    case teUtf8:
        return (form.Mark ? Utf8Mark : QByteArray()) + EncodeUtf8(text);
    case teUtf16LE:
        return (form.Mark ? Utf16LEMark : QByteArray()) +
               EncodeUtf16(text, QStringConverter::Utf16LE);
    case teUtf16BE:
        return (form.Mark ? Utf16BEMark : QByteArray()) +
               EncodeUtf16(text, QStringConverter::Utf16BE);
    case teLegacy:
        return EncodeLegacy(text);
    case teUndecodable:
        break;
    }
    throw EException("A text that could not be decoded cannot be written back.");
}

bool TTextCoding::IsValidUtf8(const QByteArray &bytes)
{
    return bytes.isValidUtf8();
}

TLineEnds TTextCoding::DetectLineEnds(const QString &text, TLineEnds def)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\n')
            return leLf;
        if (text[i] == u'\r')
            return i + 1 < text.size() && text[i + 1] == u'\n' ? leCrLf : leCr;
    }
    return def;
}
