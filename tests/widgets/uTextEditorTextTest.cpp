#include "uTextEditorFixture.h"

#include "widgets/uTextEditorCodec.h"

namespace {

QString Units(std::initializer_list<char16_t> units)
{
    return QString(reinterpret_cast<const QChar *>(units.begin()), qsizetype(units.size()));
}

const std::pair<const char *, QString> Texts[] = {
    {"Nul", Units({u'a', 0, u'b', 0, 0, u'c'})},
    {"ControlCharacters", Units({1, 7, 8, 0x1B, 0x7F, 0x80, 0x9F, u'x'})},
    {"ByteOrderMarkAtTheFront", Units({0xFEFF, u'a', 0xFEFF})},
    {"LineEndsOfAllKinds", QStringLiteral("a\r\nb\nc\rd\r\r\n\n\re")},
    {"UnicodeLineEnds", Units({u'a', 0x2028, u'b', 0x2029, u'c', 0x85, u'd'})},
    {"Scripts", QStringLiteral("äß Ω ж 日本語 한국어 العربية עברית ไทย")},
    {"Pairs", QStringLiteral("😀𝒳\U0010FFFF")},
    {"Noncharacters", Units({0xFFFE, 0xFFFF, 0xFDD0, 0xFFFD})},
    {"LoneHighSurrogate", Units({u'a', 0xD800, u'b'})},
    {"LoneBeforePair", Units({0xD83D, 0xD83D, 0xDE00, 0xD83D})},
};

class TTextEditorText : public TTextEditorFixture
{};

} // namespace

TEST_F(TTextEditorText, ComesOutAsItWentIn)
{
    for (const auto &[name, text] : Texts) {
        SCOPED_TRACE(name);
        Load(text);
        EXPECT_EQ(Editor->Text(), text);
        EXPECT_FALSE(Editor->IsModified());
        Press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(Editor->Text(), text) << "there is nothing to undo";
        Editor->SelectAll();
        EXPECT_EQ(Editor->SelectedText(), text);
        Press(Qt::Key_End, Qt::ControlModifier);
        EXPECT_EQ(Editor->Text(), text);
    }
}

TEST_F(TTextEditorText, IsPastedIntoAnEmptyEditorAndUndoneInOneStep)
{
    for (const auto &[name, text] : Texts) {
        SCOPED_TRACE(name);
        Load("");
        Editor->PasteText(text);
        const bool isMixed = text.count(u'\r') + text.count(u'\n') > 1;
        if (!isMixed) { // mixed line ends become those of the first line
            EXPECT_EQ(Editor->Text(), text);
        }
        EXPECT_EQ(Editor->IsModified(), !text.isEmpty());
        Press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(Editor->Text(), QString());
        EXPECT_FALSE(Editor->IsModified());
    }
}

TEST(TTextEditorCodec, CountsBytesAndUnitsAlike)
{
    for (const auto &[name, text] : Texts) {
        SCOPED_TRACE(name);
        const QByteArray bytes = TTextEditorCodec::Encode(text);
        EXPECT_EQ(TTextEditorCodec::UnitsOf(bytes), text.size());
        qsizetype from = 0;
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (i > 0 && text[i].isLowSurrogate() && text[i - 1].isHighSurrogate())
                continue; // inside a pair
            const qsizetype at = TTextEditorCodec::BytesOf(bytes, i);
            EXPECT_GE(at, from);
            EXPECT_EQ(TTextEditorCodec::Decode(QByteArrayView(bytes).first(at)), text.first(i));
            from = at + 1;
        }
    }
}

TEST(TTextEditorCodec, BrokenBytesInTheBufferBecomeReplacementCharacters)
{
    const QByteArray bytes("a\xFF\xED\xA0"
                           "b\xF4\x90\x80\x80\xC0\x80\xE2\x82");
    const QString text = TTextEditorCodec::Decode(bytes);
    EXPECT_EQ(text.size(), TTextEditorCodec::UnitsOf(bytes));
    EXPECT_EQ(text.count(QChar::ReplacementCharacter), text.size() - 2);
    EXPECT_EQ(text[0], u'a');
    EXPECT_EQ(text[4], u'b');
}

TEST_F(TTextEditorText, NewLinesEndAsTheFirstLineDoes)
{
    const QString rows[][2] = {
        {"a\r\nb\n", "\r\n"}, {"a\nb\r\n", "\n"}, {"a\rb", "\r"}, {"a", "\n"}};
    for (const auto &[text, lineEnd] : rows) {
        Load(text);
        Press(Qt::Key_Return);
        EXPECT_EQ(Editor->Text(), lineEnd + text);
        Load(text);
        Editor->PasteText("x\ny\r\nz\r");
        const QString pasted = QStringList{"x", "y", "z", text}.join(lineEnd);
        EXPECT_EQ(Editor->Text(), text == u"a" ? "x\ny\nz\na" : pasted);
    }
}

TEST_F(TTextEditorText, ReadOnlyTakesNoInputButNewText)
{
    Editor->SetReadOnly(true);
    Editor->SetText("fixed");
    Type("x");
    Press(Qt::Key_Return);
    Press(Qt::Key_Slash, Qt::ControlModifier);
    Editor->PasteText("y");
    EXPECT_EQ(Editor->Text(), "fixed");
    EXPECT_TRUE(Editor->IsReadOnly());
}

TEST_F(TTextEditorText, CaretGoesByCharactersNotBytes)
{
    Load(QStringLiteral("ä😀x\n日本"), 0, 3);
    EXPECT_EQ(Editor->CaretColumn(), 3);
    Type("|");
    Editor->SetCaret(1, 99);
    EXPECT_EQ(Editor->CaretLine(), 1);
    EXPECT_EQ(Editor->CaretColumn(), 2);
    Editor->SetCaret(99, -1);
    EXPECT_EQ(Editor->CaretLine(), 1);
    EXPECT_EQ(Editor->CaretColumn(), 0);
    EXPECT_EQ(Editor->Text(), "ä😀|x\n日本");
}
