#include "tools/uSpuManager.h"

#include <gtest/gtest.h>

namespace {

/// The text with "s" for each character inside a string and "c" for each inside a comment; line
/// ends stay.
QString Marked(const QString &text)
{
    TSpuManager manager([&] { return text; });
    QString marked = text;
    TSpuPosition at;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\n') {
            at = {at.FLineIndex + 1, 1};
            continue;
        }
        if (manager.PositionIsString(at))
            marked[i] = u's';
        else if (manager.PositionIsComment(at))
            marked[i] = u'c';
        ++at.FCharIndex;
    }
    return marked;
}

TEST(TSpuManagerTest, TellsStringsAndCommentsFromTheRest)
{
    const struct
    {
        const char *Text, *Marked;
    } cases[] = {
        {"select 1 -- x", "select 1 cccc"},
        {"a --\tb\nc", "a cccc\nc"},
        {"'it''s' x", "sssssss x"},
        {"'a\\' b' c", "ssss b' c"}, // the backslash means nothing, so the last quote opens
        {"# 'x'\n'y'", "ccccc\nsss"},
        {"a/* b\nc */d", "acccc\nccccd"},
        {"'a\nb' c", "ss\nss c"},
        {"'open", "'open"},
        {"\"a -- b\" `c # d`", "\"a ccccccccccccc"},
        {"'#' '--' '/*' x", "sss ssss ssss x"},
        {"/* ' */ 'a' * / x", "ccccccc sss * / x"},
        {"long enough to be looked at in blocks of sixteen 'string here' tail",
         "long enough to be looked at in blocks of sixteen sssssssssssss tail"},
    };
    for (const auto &each : cases)
        EXPECT_EQ(Marked(each.Text).toStdString(), each.Marked);
}

} // namespace
