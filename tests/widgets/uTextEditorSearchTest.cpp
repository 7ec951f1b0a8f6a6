#include "uTextEditorFixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace {

struct TFindCase
{
    const char *Name;
    QString Text;
    QString What;
    const char *Options;     // c: case, w: whole word, r: regular expression
    QList<qsizetype> Starts; // of the hits that F3 goes through, then round again
};

const TFindCase Finds[] = {
    {"SameCase", "Ab ab AB", "AB", "c", {6}},
    {"AnyCaseBeyondAscii", QStringLiteral("ÄÖ äö"), QStringLiteral("äÖ"), "", {0, 3}},
    {"WholeWordBeyondAscii", QStringLiteral("äid id"), "id", "w", {4}},
    {"CharactersOfExpressionsArePlain", "a.c abc a*", "a.c", "", {0}},
    {"ExpressionLineByLine", "a\r\nab\na\r\n", "^a$", "r", {0, 6}},
    {"ExpressionAcrossLines", "a\nb\na\nb", "b\\na", "r", {2}},
    {"EmptyHits", "a\nb", "^", "r", {2, 0}},
    {"BehindNul", QString("a") + QChar::Null + "a", "a", "", {0, 2}},
    {"BehindHalfAPair", QString(QChar(0xD800)) + "ab", "\\w", "r", {1, 2}},
    {"NoHit", "abc", "d", "", {}},
};

class TTextEditorSearchBar : public TTextEditorFixture
{
protected:
    void Open(const QString &what, const char *options = "", const char *key = "F")
    {
        Press(*key == 'H' ? Qt::Key_H : Qt::Key_F, Qt::ControlModifier);
        Part<QToolButton>("butCase")->setChecked(strchr(options, 'c'));
        Part<QToolButton>("butWord")->setChecked(strchr(options, 'w'));
        Part<QToolButton>("butRegExp")->setChecked(strchr(options, 'r'));
        Part<QLineEdit>("edFind")->setText(what);
    }

    /// Where the hits begin that so many presses of F3 go to.
    QList<qsizetype> Walk(qsizetype count, Qt::KeyboardModifiers modifiers = {})
    {
        QList<qsizetype> starts;
        for (qsizetype i = 0; i < count; ++i) {
            Press(Qt::Key_F3, modifiers);
            const long from = Send(TSci::SCI_GETSELECTIONSTART);
            const long to = Send(TSci::SCI_GETSELECTIONEND);
            Send(TSci::SCI_SETSEL, 0, from);
            starts += Editor->SelectedText().size();
            Send(TSci::SCI_SETSEL, from, to);
        }
        return starts;
    }

    QString Message() { return Part<QLabel>("lblMessage")->text(); }
    void Click(const char *name) { QTest::mouseClick(Part(name), Qt::LeftButton); }
};

} // namespace

TEST_F(TTextEditorSearchBar, GoesThroughAllHitsBothWaysAndRound)
{
    for (const TFindCase &row : Finds) {
        SCOPED_TRACE(row.Name);
        Open(row.What, row.Options);
        Load(row.Text);
        EXPECT_EQ(Walk(row.Starts.size()), row.Starts);
        Press(Qt::Key_F3);
        if (row.Starts.isEmpty())
            EXPECT_EQ(Message(), "Not found");
        else
            EXPECT_TRUE(Message().contains("from the start") || row.Starts.first() != 0)
                << Message();

        Load(row.Text);
        QList<qsizetype> back = row.Starts;
        std::sort(back.begin(), back.end(), std::greater<>());
        EXPECT_EQ(Walk(back.size(), Qt::ShiftModifier), back);
        EXPECT_EQ(Editor->Text(), row.Text);
    }
}

TEST_F(TTextEditorSearchBar, SearchesWhileOneTypesAndCounts)
{
    Load("select a, abc, ab");
    Press(Qt::Key_F, Qt::ControlModifier);
    auto *find = Part<QLineEdit>("edFind");
    EXPECT_TRUE(find->hasFocus());
    QTest::keyClicks(find, "ab");
    EXPECT_EQ(Editor->SelectedText(), "ab");
    EXPECT_EQ(Message(), "1 of 2");
    QTest::keyClicks(find, "c");
    EXPECT_EQ(Editor->SelectedText(), "abc");
    EXPECT_EQ(Message(), "1 of 1");
    QTest::keyClicks(find, "d");
    EXPECT_EQ(Message(), "Not found");
    QTest::keyClick(find, Qt::Key_Escape);
    EXPECT_FALSE(Part("searchBar")->isVisible());
    EXPECT_TRUE(Editor->Editor()->hasFocus());
}

TEST_F(TTextEditorSearchBar, SaysWhatIsWrongWithAnExpression)
{
    Load("a(");
    Open("(", "r");
    Press(Qt::Key_F3);
    EXPECT_TRUE(Message().startsWith("The expression is wrong: ")) << Message();
    Load(QString(40, u'a') + u'!');
    Open("(a+)*(?:a+)*$\\b\\B", "r");
    Press(Qt::Key_F3);
    EXPECT_FALSE(Message().isEmpty());
}

TEST_F(TTextEditorSearchBar, FindsInTextChangedMeanwhile)
{
    Load("x\n");
    Open("ab");
    Press(Qt::Key_F3);
    EXPECT_EQ(Message(), "Not found");
    Editor->PasteText("ab");
    Press(Qt::Key_F3);
    EXPECT_EQ(Editor->SelectedText(), "ab");
}

namespace {
struct TReplaceCase
{
    const char *Name;
    QString Text;
    QString What;
    QString With;
    const char *Options;
    QString After;
    int Count;
};

const TReplaceCase Replaces[] = {
    {"PlainKeepsMarks", "a", "a", "$1\\n", "", "$1\\n", 1},
    {"Longer", "aaa", "a", "aa", "", "aaaaaa", 3},
    {"Groups", "k=v; x=y", "(\\w)=(\\w)", "$2=\\1", "r", "v=k; y=x", 2},
    {"Escapes", "a b", " ", "\\t\\n\\\\$$\\x", "r", "a\t\n\\$\\xb", 1},
    {"GroupWithoutPart", "b", "(a)?b", "<$1>", "r", "<>", 1},
    {"EmptyHits", "a\nb", "^", "- ", "r", "- a\n- b", 2},
    {"LineEndsStay", "a\r\na\na", "a$", "b", "r", "b\r\nb\nb", 3},
    {"AroundNulAndHalfAPair", QString("a") + QChar::Null + QChar(0xD800) + "a", "(a|\\x{FFFD})",
     "$1$1", "r", QString("aa") + QChar::Null + QChar(0xD800) + QChar(0xD800) + "aa", 3},
    {"NoHit", "abc", "d", "e", "", "abc", 0},
};
} // namespace

TEST_F(TTextEditorSearchBar, ReplacesAllAsOneStep)
{
    for (const TReplaceCase &row : Replaces) {
        Load(row.Text);
        Open(row.What, row.Options, "H");
        Part<QLineEdit>("edReplace")->setText(row.With);
        Click("butReplaceAll");
        EXPECT_EQ(Editor->Text(), row.After) << row.Name;
        const QString message = QStringLiteral("Replaced: %1").arg(row.Count);
        EXPECT_EQ(Message(), row.Count ? message : "Not found") << row.Name;
        EXPECT_EQ(Editor->IsModified(), row.Count > 0) << row.Name;
        Editor->Editor()->setFocus();
        Press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(Editor->Text(), row.Text) << row.Name;
    }
}

TEST_F(TTextEditorSearchBar, ReplacesOneByOne)
{
    Load("a1 a2 a3", 0, 2);
    Open("a(\\d)", "r", "H");
    Part<QLineEdit>("edReplace")->setText("b$1");
    Click("butReplace"); // nothing selected: goes to the next one
    EXPECT_EQ(Editor->Text(), "a1 a2 a3");
    EXPECT_EQ(Editor->SelectedText(), "a2");
    Click("butReplace");
    EXPECT_EQ(Editor->Text(), "a1 b2 a3");
    EXPECT_EQ(Editor->SelectedText(), "a3");
    QTest::keyClick(Part("edReplace"), Qt::Key_Return);
    EXPECT_EQ(Editor->Text(), "a1 b2 b3");
    EXPECT_EQ(Editor->SelectedText(), "a1") << "and round";
}
