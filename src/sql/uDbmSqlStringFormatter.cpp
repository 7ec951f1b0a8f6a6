#include "sql/uDbmSqlStringFormatter.h"

#include <array>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

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

bool HasTrigger(const char16_t *text, qsizetype size)
{
    for (qsizetype i = 0; i < size; ++i)
        if (IsTrigger(text[i]))
            return true;
    return false;
}

#ifdef __SSE2__
constexpr qsizetype Block = 16;

// Whether one of sixteen characters may be a trigger. Cheaper than the exact test: control
// characters from 8 to 26, # and & count as well.
inline bool MayHaveTrigger(const char16_t *text)
{
    const auto *at = reinterpret_cast<const __m128i *>(text);
    // Characters above 255 become 255 or 0, which are no triggers.
    const __m128i chars = _mm_packus_epi16(_mm_loadu_si128(at), _mm_loadu_si128(at + 1));
    const __m128i fromEight = _mm_sub_epi8(chars, _mm_set1_epi8(8));
    const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(fromEight, _mm_set1_epi8(18)), fromEight);
    const __m128i quote = _mm_cmpeq_epi8(_mm_or_si128(chars, _mm_set1_epi8(5)), _mm_set1_epi8(39));
    const __m128i backslash = _mm_cmpeq_epi8(chars, _mm_set1_epi8(92));
    return _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(control, quote), backslash)) != 0;
}
#else
constexpr qsizetype Block = 64;

inline bool MayHaveTrigger(const char16_t *text)
{
    return HasTrigger(text, Block);
}
#endif

bool NeedsEscape(const char16_t *text, qsizetype size)
{
    qsizetype i = 0;
    for (; i + Block <= size; i += Block)
        if (MayHaveTrigger(text + i) && HasTrigger(text + i, Block))
            return true;
    return HasTrigger(text + i, size - i);
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
