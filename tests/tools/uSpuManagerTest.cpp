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
        {"a--", "a--"},
        {"a --\tb\nc", "a cccc\nc"},
        {"'it''s' x", "sssssss x"},
        {"'a\\' b' c", "ssss b' c"}, // the backslash means nothing, so the last quote opens
        {"# 'x'\n'y'", "ccccc\nsss"},
        {"a/* b\nc */d", "acccc\nccccd"},
        {"/*! 1 */ 2", "cccccccc 2"},
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

TEST(TSpuManagerTest, AnOpenCommentReachesPastTheEnd)
{
    for (const char *text : {"a\n/* open\nmore", "a\n/* open\nmore\r\nand"}) {
        TSpuManager manager([=] { return QString(text); });
        EXPECT_FALSE(manager.PositionIsComment({1, 1}));
        EXPECT_TRUE(manager.PositionIsComment({2, 1}));
        EXPECT_TRUE(manager.PositionIsComment({3, 5}));
    }
    TSpuManager closed([] { return QString("'x' /* y */"); });
    EXPECT_TRUE(closed.PositionIsString({1, 3}));
    EXPECT_FALSE(closed.PositionIsString({1, 4}));
    EXPECT_TRUE(closed.PositionIsComment({1, 11}));
    EXPECT_FALSE(closed.PositionIsComment({1, 12}));
}

TEST(TSpuManagerTest, LooksOnceAtEachTextAndWhenItIsAsked)
{
    int looks = 0;
    QString text = "'a'";
    TSpuManager manager([&] {
        ++looks;
        return text;
    });
    manager.RequestProcess();
    EXPECT_EQ(looks, 0);
    EXPECT_TRUE(manager.PositionIsString({1, 2}));
    EXPECT_TRUE(manager.PositionIsString({1, 1}));
    EXPECT_EQ(looks, 1);
    text = "abc";
    manager.RequestProcess();
    EXPECT_FALSE(manager.PositionIsString({1, 2}));
    EXPECT_EQ(looks, 2);
}

TEST(TSpuManagerTest, FindsEveryOccurrenceOfACharacter)
{
    const TSpuPositions found = TSpuBaseUtils::SkanCharPositions("a;\r\n\r;;\n", ';');
    const TSpuPositions wanted{{1, 2}, {3, 1}, {3, 2}};
    EXPECT_EQ(found, wanted);
    EXPECT_LT(TSpuPositionComparer::Compare({1, 9}, {2, 1}), 0);
    EXPECT_GT(TSpuPositionComparer::Compare({2, 2}, {2, 1}), 0);
}

} // namespace
