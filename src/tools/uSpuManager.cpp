#include "tools/uSpuManager.h"

#include <algorithm>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

bool IsLineEnd(char16_t c)
{
    return c == u'\n' || c == u'\r';
}

// Calls the action with the place of each character of the text that is one of the wanted, as long
// as it gives the place to go on from.
template <char16_t... Wanted>
const char16_t *FindAny(const char16_t *at, const char16_t *end)
{
#ifdef __SSE2__
    for (; end - at >= 16; at += 16) {
        const auto *block = reinterpret_cast<const __m128i *>(at);
        const __m128i low = _mm_loadu_si128(block);
        const __m128i high = _mm_loadu_si128(block + 1);
        const auto hits = [](__m128i units) {
            __m128i found = _mm_setzero_si128();
            ((found = _mm_or_si128(
                  found, _mm_cmpeq_epi16(units, _mm_set1_epi16(static_cast<short>(Wanted))))),
             ...);
            return found;
        };
        const int mask = _mm_movemask_epi8(_mm_packs_epi16(hits(low), hits(high)));
        if (mask != 0)
            return at + __builtin_ctz(static_cast<unsigned>(mask));
    }
#endif
    return std::find_if(at, end, [](char16_t c) { return ((c == Wanted) || ...); });
}

template <typename T>
bool PositionInList(const TSpuPosition &position, const std::vector<T> &elements)
{
    // Elements stand in order and do not overlap: only the last that begins before can hold it.
    auto behind = std::upper_bound(
        elements.begin(), elements.end(), position,
        [](const TSpuPosition &left, const TSpuElement &right) { return left < right.FBPosition; });
    return behind != elements.begin() &&
           TSpuBaseUtils::PositionInElement(position, *std::prev(behind));
}

} // namespace

/// One walk over a text with three states.
class TSpuPrimaryParser::TScan
{
public:
    TScan(TSpuPrimaryParser &parser, const QString &text)
        : FParser(parser), FStart(reinterpret_cast<const char16_t *>(text.utf16())),
          FEnd(FStart + text.size()), FLine(FStart)
    {}

    void Run()
    {
        const char16_t *at = FStart;
        while (at < FEnd)
            at = FStatus == ssNormal ? Normal(at) : FStatus == ssInString ? String(at) : Block(at);
        if (FStatus == ssInBlockComment) {
            PassLines(FEnd);
            // Behind the last line. A text that ends in a line end has no line behind that.
            const bool openLine = FLine < FEnd;
            FParser.FCommentList.push_back({{FBegin, {FLineIndex + (openLine ? 1 : 0), 1}}});
        }
    }

private:
    // The units behind `at` in its line; the end of a line is none of them.
    char16_t Unit(const char16_t *at, int offset) const
    {
        for (int i = 0; i <= offset; ++i)
            if (at + i >= FEnd || IsLineEnd(at[i]))
                return 0;
        return at[offset];
    }

    const char16_t *Normal(const char16_t *at)
    {
        at = FindAny<u'\'', u'#', u'-', u'/'>(at, FEnd);
        if (at == FEnd)
            return at;
        const char16_t next = Unit(at, 1);
        if (*at == u'\'' && next == u'\'') {
            Begin(at);
            FParser.FStringList.push_back({{FBegin, Position(at + 1)}});
            return at + 2;
        }
        if (*at == u'\'')
            return Enter(ssInString, at, 1);
        const char16_t third = *at == u'-' && next == u'-' ? Unit(at, 2) : u'\0';
        if (*at == u'#' || third == u' ' || third == u'\t')
            return LineComment(at);
        if (*at == u'/' && next == u'*')
            return Enter(ssInBlockComment, at, 2);
        return at + 1;
    }

    const char16_t *LineComment(const char16_t *at)
    {
        Begin(at);
        const char16_t *end = FindAny<u'\n', u'\r'>(at, FEnd);
        FParser.FCommentList.push_back({{FBegin, Position(end - 1)}});
        return end;
    }

    const char16_t *String(const char16_t *at)
    {
        at = FindAny<u'\''>(at, FEnd);
        if (at == FEnd)
            return at;
        if (Unit(at, 1) == u'\'')
            return at + 2;
        FParser.FStringList.push_back({{FBegin, Position(at)}});
        FStatus = ssNormal;
        return at + 1;
    }

    const char16_t *Block(const char16_t *at)
    {
        at = FindAny<u'*'>(at, FEnd);
        if (at == FEnd || Unit(at, 1) != u'/')
            return at == FEnd ? at : at + 1;
        FParser.FCommentList.push_back({{FBegin, Position(at + 1)}});
        FStatus = ssNormal;
        return at + 2;
    }

    const char16_t *Enter(TSkanStatus status, const char16_t *at, int length)
    {
        Begin(at);
        FStatus = status;
        return at + length;
    }
    void Begin(const char16_t *at) { FBegin = Position(at); }

    TSpuPosition Position(const char16_t *at)
    {
        PassLines(at);
        return {FLineIndex, static_cast<qint32>(at - FLine) + 1};
    }

    // Lines are counted up to the places that are recorded and nowhere else.
    void PassLines(const char16_t *to)
    {
        while (true) {
            const char16_t *end = FindAny<u'\n', u'\r'>(FCounted, to);
            if (end >= to) {
                FCounted = to;
                return;
            }
            FCounted = end + 1;
            if (*end == u'\r' && FCounted < FEnd && *FCounted == u'\n')
                ++FCounted;
            FLine = FCounted;
            ++FLineIndex;
            if (FCounted >= to)
                return;
        }
    }

    TSpuPrimaryParser &FParser;
    const char16_t *const FStart;
    const char16_t *const FEnd;
    const char16_t *FLine; // start of the line at hand
    const char16_t *FCounted = FStart;
    qint32 FLineIndex = 1;
    TSkanStatus FStatus = ssNormal;
    TSpuPosition FBegin;
};

int TSpuPositionComparer::Compare(const TSpuPosition &left, const TSpuPosition &right)
{
    const auto order = left <=> right;
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

bool TSpuBaseUtils::PositionInElement(const TSpuPosition &position, const TSpuElement &element)
{
    return position >= element.FBPosition && position <= element.FEPosition;
}

TSpuPositions TSpuBaseUtils::SkanCharPositions(const QString &text, QChar character)
{
    TSpuPositions positions;
    TSpuPosition at;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!IsLineEnd(text[i].unicode())) {
            if (text[i] == character)
                positions.push_back(at);
            ++at.FCharIndex;
            continue;
        }
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        at = {at.FLineIndex + 1, 1};
    }
    return positions;
}

void TSpuPrimaryParser::Execute()
{
    FCommentList.clear();
    FStringList.clear();
    TScan(*this, FStrings()).Run();
}

bool TSpuPrimaryParser::PositionInComment(const TSpuPosition &position) const
{
    return PositionInList(position, FCommentList);
}

bool TSpuPrimaryParser::PositionInString(const TSpuPosition &position) const
{
    return PositionInList(position, FStringList);
}

void TSpuManager::Process()
{
    if (FIsProcessed)
        return;
    FPrimaryParser.Execute();
    FIsProcessed = true;
}

bool TSpuManager::PositionIsString(const TSpuPosition &position)
{
    Process();
    return FPrimaryParser.PositionInString(position);
}

bool TSpuManager::PositionIsComment(const TSpuPosition &position)
{
    Process();
    return FPrimaryParser.PositionInComment(position);
}
