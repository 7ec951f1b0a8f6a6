#include "uTextEditorFixture.h"

#include "widgets/uSqlHighlighter.h"
#include "widgets/uTextEditorControl.h"
#include "widgets/uTextEditorStyler.h"

#include <QApplication>
#include <QClipboard>
#include <functional>

namespace {

// One letter for each style, so that a row reads as text above its styles.
const char Letters[] = ".ktfsicxnvp";

struct TSqlCase
{
    const char *Name;
    const char *Text;
    const char *Styles;
};

const TSqlCase Sql[] = {
    {"TypesAndFunctions", "INT count(*) count", "ttt.fffff........."},
    {"QualifiedNamesArePlain", "t.date d.`k`.x", ".........iii.."},
    {"Strings", "'a''b' \"c\" 'd\\'e' x", "ssssss.sss.ssssss.."},
    {"OpenString", "'a\nb' select", "sssss.kkkkkk"},
    {"BackslashAtTheLineEnd", "'a\\\nb'1", "ssssssn"},
    {"Backticks", "`a``b` `c\\` 1", "iiiiii.iiii.n"},
    {"OpenBackticks", "`a\nb`1", "iiiiin"},
    {"DashComment", "1 -- a\n--\n--\tb\n5--1 --x", "n.cccccccccccccn..n...."},
    {"HashComment", "1 # '\n'a'", "n.ccccsss"},
    {"BlockComment", "/* a\n'b */ 1 /**/2/*/ 3", "cccccccccc.n.ccccnccccc"},
    {"ExecutedComment", "/*!40101 SET\na */;/*M!1*/", "xxxxxxxxxxxxxxxxx.xxxxxxx"},
    {"Numbers", "1 2.5 .5 1e-3 0xFf 0b01 1a 1e", "n.nnn.nn.nnnn.nnnn.nnnn......"},
    {"NulAndControls", "a\x01'\x02'", "..sss"},
    {"LongWord", "selectselectselectselectselectselectselectselectselectselectselectselect1", ""},
};

QString StyleLetters(const QByteArray &text)
{
    QByteArray styles(text.size(), '\x7F');
    int state = 0;
    for (qsizetype from = 0; from < text.size();) {
        const qsizetype end = text.indexOf('\n', from);
        const qsizetype length = (end < 0 ? text.size() : end + 1) - from;
        state = TSqlHighlighter::StyleLine(text.data() + from, length, state, styles.data() + from);
        from += length;
    }
    QString letters;
    for (const char style : styles)
        letters += style >= 0 && style < ssCount ? QChar(Letters[int(style)]) : QChar(u'!');
    return letters;
}

class TTextEditorStyle : public TTextEditorFixture
{
protected:
    void StyleAll()
    {
        while (Send(TSci::SCI_GETENDSTYLED) < Send(TSci::SCI_GETLENGTH)) {
            Press(Qt::Key_End, Qt::ControlModifier);
            QCoreApplication::processEvents();
        }
    }
};

} // namespace

TEST(TSqlHighlighter, TellsThePartsOfSql)
{
    for (const TSqlCase &row : Sql) {
        const QByteArray text(row.Text);
        const QString expected = *row.Styles ? QString(row.Styles) : QString(text.size(), u'.');
        EXPECT_EQ(StyleLetters(text), expected) << row.Name << ": " << row.Text;
    }
}

TEST(TSqlHighlighter, StylesEveryByteOfAnyText)
{
    QByteArray text;
    for (int first = 0; first < 256; ++first)
        for (const char second : {'\0', '\'', '*', '-', '@', '0', 'a', '\n', '\\', '\xFF'})
            (text += char(first)) += second;
    EXPECT_EQ(StyleLetters(text).count(u'!'), 0);
    EXPECT_EQ(StyleLetters("'").size(), 1);
    EXPECT_EQ(StyleLetters("@'"), "vs");
    EXPECT_EQ(StyleLetters("'\\"), "ss");
}

TEST_F(TTextEditorStyle, FollowsEditsIntoLaterLines)
{
    Load(QString("select 1;\n").repeated(100));
    StyleAll();
    const long last = Send(TSci::SCI_POSITIONFROMLINE, 99);
    EXPECT_EQ(StyleAt(last), ssKeyword);
    Editor->SetCaret(0, 0);
    Editor->PasteText("/* ");
    StyleAll();
    EXPECT_EQ(StyleAt(last + 3), ssComment);
    Editor->SetCaret(1, 0);
    Editor->PasteText("*/\n/*\n*/");
    StyleAll();
    EXPECT_EQ(StyleAt(Send(TSci::SCI_POSITIONFROMLINE, 101)), ssKeyword);
    Send(TSci::SCI_UNDO);
    StyleAll();
    EXPECT_EQ(StyleAt(last + 3), ssComment);
}

TEST_F(TTextEditorStyle, ReadsOnlyTheChangedLinesAgain)
{
    TTextEditorControl control;
    TTextEditorStyler styler(&control);
    int lines = 0;
    styler.SetLineStyler([&](const char *text, qsizetype length, int state, char *styles) {
        ++lines;
        return TSqlHighlighter::StyleLine(text, length, state, styles);
    });
    const QByteArray text = QByteArray("select 'a' from t;\n").repeated(2000);
    control.Send(TSci::SCI_APPENDTEXT, text.size(), text.constData());
    EXPECT_EQ(styler.LineState(1999), 0);
    EXPECT_EQ(lines, 2000);
    lines = 0;
    for (const long line : {1L, 1500L})
        control.Send(TSci::SCI_INSERTTEXT, control.LineStart(line), "b\nc");
    EXPECT_EQ(styler.LineState(2001), 0);
    EXPECT_LT(lines, 1510) << "nothing after the last change";
    EXPECT_EQ(styler.StyledTo(), control.Size());
    lines = 0;
    control.Send(TSci::SCI_INSERTTEXT, 0, "x");
    styler.LineState(2001);
    EXPECT_LT(lines, 5);
    EXPECT_EQ(styler.StyledTo(), control.Size());
}

TEST_F(TTextEditorStyle, OpensAMillionLinesAndStylesWhatIsSeen)
{
    const QString text = QString("insert into t values (1, 'a');\n").repeated(1'000'000);
    Load(text);
    EXPECT_EQ(StyleAt(0), ssKeyword);
    EXPECT_LT(Send(TSci::SCI_GETENDSTYLED), 2 * 1024 * 1024);
    Type("x");
    Press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(Editor->CaretLine(), 1'000'000);
    EXPECT_EQ(Editor->Text(), u'x' + text);
}

TEST_F(TTextEditorStyle, OpensFiftyMegabytesInOneLine)
{
    const qsizetype size = 50'000'000;
    const QString text = QString("(1, 'ab'),").repeated(size / 10);
    Load(text);
    EXPECT_EQ(StyleAt(0), ssDefault);
    EXPECT_EQ(StyleAt(4), ssString);
    Press(Qt::Key_End, Qt::ControlModifier);
    Type("y");
    EXPECT_TRUE(Editor->Text() == text + u'y');
    EXPECT_EQ(Editor->CaretColumn(), size + 1);
    EXPECT_EQ(StyleAt(size - 3), ssString) << "shown around the caret";
    EXPECT_EQ(StyleAt(size / 2), TTextEditorStyler::HiddenStyle);
}

TEST_F(TTextEditorStyle, ShowsALongLineAroundTheCaretWithANote)
{
    const QString line = QStringLiteral("'äbc' ").repeated(20'000);
    Load("select 1\n" + line + "\nselect 2");
    EXPECT_GT(Send(TSci::SCI_ANNOTATIONGETLINES, 1), 0);
    EXPECT_EQ(Send(TSci::SCI_ANNOTATIONGETLINES, 2), 0);
    Editor->SetCaret(1, line.size() / 2);
    Settle();
    const long caret = Send(TSci::SCI_GETCURRENTPOS);
    EXPECT_NE(StyleAt(caret), TTextEditorStyler::HiddenStyle);
    EXPECT_EQ(StyleAt(Send(TSci::SCI_POSITIONFROMLINE, 1)), TTextEditorStyler::HiddenStyle);
    EXPECT_EQ(StyleAt(Send(TSci::SCI_POSITIONFROMLINE, 2)), ssKeyword);
    for (const Qt::Key key : {Qt::Key_End, Qt::Key_Home, Qt::Key_End}) {
        Press(key);
        Settle();
        const long x = Send(TSci::SCI_POINTXFROMPOSITION, 0, Send(TSci::SCI_GETCURRENTPOS));
        const int width = Editor->Editor()->viewport()->width();
        EXPECT_GE(x, key == Qt::Key_End ? width / 3 : 0) << "text is seen before the caret";
        EXPECT_LT(x, width);
    }
    Editor->SetText("short");
    Settle();
    EXPECT_EQ(Send(TSci::SCI_ANNOTATIONGETLINES, 0), 0);
}

TEST_F(TTextEditorStyle, ReplacesWhatALongLineHides)
{
    struct TRow
    {
        const char *Name;
        std::function<void()> Do;
        const char *After;
    };
    const TRow rows[] = {
        {"Delete", [&] { Press(Qt::Key_Delete); }, "ab"},
        {"Letter", [&] { Type("x"); }, "axb"},
        {"Enter", [&] { Press(Qt::Key_Return); }, "a\nb"},
        {"Cut", [&] { Press(Qt::Key_X, Qt::ControlModifier); }, "ab"},
        {"Paste", [&] { Press(Qt::Key_V, Qt::ControlModifier); }, "apb"},
        {"PasteText", [&] { Editor->PasteText("t"); }, "atb"},
    };
    const QString text = u'a' + QString("x ").repeated(100'000) + u'b';
    for (const TRow &row : rows) {
        QApplication::clipboard()->setText("p");
        Load(text);
        Send(TSci::SCI_SETSEL, 1, text.size() - 1);
        Settle();
        row.Do();
        EXPECT_EQ(Editor->Text(), row.After) << row.Name;
        Press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_TRUE(Editor->Text() == text) << row.Name << ": undone in one step";
    }
}
