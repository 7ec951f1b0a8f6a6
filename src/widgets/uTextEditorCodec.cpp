#include "widgets/uTextEditorCodec.h"

#include <QStringDecoder>

namespace {

struct TCodeStep
{
    int Bytes;
    char32_t Code;
};

bool IsTail(uchar byte)
{
    return (byte & 0xC0) == 0x80;
}

// Length by the lead byte; 1 for what can't lead, so that every broken byte counts alone.
int LengthByLead(uchar lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    return 1;
}

bool IsInRange(int length, char32_t code)
{
    return length == 2 || (length == 3 && code >= 0x800) ||
           (length == 4 && code >= 0x10000 && code <= 0x10FFFF);
}

TCodeStep StepAt(const uchar *at, const uchar *end)
{
    if (*at < 0x80)
        return {1, *at};
    const int length = LengthByLead(*at);
    if (length == 1 || end - at < length)
        return {1, QChar::ReplacementCharacter};
    char32_t code = *at & (0xFF >> (length + 1));
    for (int i = 1; i < length; ++i) {
        if (!IsTail(at[i]))
            return {1, QChar::ReplacementCharacter};
        code = (code << 6) | (at[i] & 0x3F);
    }
    if (!IsInRange(length, code))
        return {1, QChar::ReplacementCharacter};
    return {length, code};
}

const uchar *Begin(QByteArrayView bytes)
{
    return reinterpret_cast<const uchar *>(bytes.data());
}

QString DecodeStepwise(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    const uchar *at = Begin(bytes);
    for (const uchar *end = at + bytes.size(); at < end;) {
        const TCodeStep step = StepAt(at, end);
        if (QChar::requiresSurrogates(step.Code))
            text.append(QChar(QChar::highSurrogate(step.Code)))
                .append(QChar(QChar::lowSurrogate(step.Code)));
        else
            text.append(QChar(char16_t(step.Code)));
        at += step.Bytes;
    }
    return text;
}

void AppendLone(QByteArray &bytes, char16_t unit)
{
    bytes.append(char(0xE0 | (unit >> 12)));
    bytes.append(char(0x80 | ((unit >> 6) & 0x3F)));
    bytes.append(char(0x80 | (unit & 0x3F)));
}

bool IsPair(const QString &text, qsizetype at)
{
    return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
}

} // namespace

QByteArray TTextEditorCodec::Encode(const QString &text)
{
    if (text.isValidUtf16())
        return text.toUtf8();
    QByteArray bytes;
    bytes.reserve(text.size() * 2);
    qsizetype done = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate())
            continue;
        if (IsPair(text, i)) {
            ++i;
            continue;
        }
        bytes += QStringView(text).mid(done, i - done).toUtf8();
        AppendLone(bytes, text[i].unicode());
        done = i + 1;
    }
    return bytes + QStringView(text).mid(done).toUtf8();
}

QString TTextEditorCodec::Decode(QByteArrayView bytes)
{
    // Without the flag a mark at the very front would be taken for the encoding's and dropped.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::ConvertInitialBom |
                                                     QStringConverter::Flag::Stateless);
    QString text = decoder(bytes);
    return decoder.hasError() ? DecodeStepwise(bytes) : text;
}

qsizetype TTextEditorCodec::UnitsOf(QByteArrayView bytes)
{
    qsizetype units = 0;
    const uchar *at = Begin(bytes);
    for (const uchar *end = at + bytes.size(); at < end;) {
        const TCodeStep step = StepAt(at, end);
        units += step.Bytes == 4 ? 2 : 1;
        at += step.Bytes;
    }
    return units;
}

qsizetype TTextEditorCodec::BytesOf(QByteArrayView bytes, qsizetype units)
{
    const uchar *const begin = Begin(bytes);
    const uchar *at = begin;
    for (const uchar *end = at + bytes.size(); at < end && units > 0;) {
        const TCodeStep step = StepAt(at, end);
        units -= step.Bytes == 4 ? 2 : 1;
        at += step.Bytes;
    }
    return at - begin;
}
