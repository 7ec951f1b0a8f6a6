#include "sql/uDbmSqlStringFormatter.h"

#include <array>

namespace {

constexpr std::array<char16_t, 256> MakeEscapes()
{
    std::array<char16_t, 256> escapes{};
    escapes[0] = u'0';
    escapes[8] = u'b';
    escapes[9] = u't';
    escapes[10] = u'n';
    escapes[13] = u'r';
    escapes[26] = u'Z';
    escapes[34] = u'"';
    escapes[39] = u'\'';
    escapes[92] = u'\\';
    return escapes;
}

constexpr std::array<char16_t, 256> Escapes = MakeEscapes();

// Deliberate: NUL does not count here. A text whose only special character is NUL passes with it.
inline bool IsTrigger(char16_t c)
{
    return (c == u'\\') | (c == u'\n') | (c == u'\r') | (c == 8) | (c == u'\t') | (c == 26) |
           (c == u'\'') | (c == u'"');
}

// Blocks without an early exit inside let the compiler compare many characters at once.
bool NeedsEscape(const char16_t *text, qsizetype size)
{
    constexpr qsizetype Block = 64;
    qsizetype i = 0;
    for (; i + Block <= size; i += Block) {
        unsigned any = 0;
        for (qsizetype k = 0; k < Block; ++k)
            any |= static_cast<unsigned>(IsTrigger(text[i + k]));
        if (any)
            return true;
    }
    for (; i < size; ++i)
        if (IsTrigger(text[i]))
            return true;
    return false;
}

} // namespace

QString TDbmSqlStringFormatter::Format(const QString &value)
{
    const auto *from = reinterpret_cast<const char16_t *>(value.constData());
    if (!NeedsEscape(from, value.size()))
        return value;
    QString escaped(value.size() * 2, Qt::Uninitialized);
    auto *const start = reinterpret_cast<char16_t *>(escaped.data());
    char16_t *out = start;
    for (const char16_t *end = from + value.size(); from != end; ++from) {
        const char16_t escape = *from < 256 ? Escapes[*from] : u'\0';
        if (escape)
            *out++ = u'\\';
        *out++ = escape ? escape : *from;
    }
    escaped.truncate(out - start);
    return escaped;
}
