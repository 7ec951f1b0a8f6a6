#include "uTextEditorFixture.h"

#include <QDialog>
#include <QLineEdit>
#include <QShortcut>
#include <QVBoxLayout>

namespace {

class TTextEditorEdit : public TTextEditorFixture
{};

struct TCommentCase
{
    const char *Name;
    const char *Before;
    const char *After;
    bool Back; // toggling again gives the text of before
};

const TCommentCase Comments[] = {
    {"AtTheLeastIndent", "  a\n    b", "  -- a\n  --   b", true},
    {"BlankLinesStay", "a\n\n  \nb", "-- a\n\n  \n-- b", true},
    {"WithoutBlank", "--a\n-- b", "a\nb", false},
    {"CrLf", "a\r\nb\r\n", "-- a\r\n-- b\r\n", true},
    {"OnlyBlanks", "  ", "  ", true},
};

} // namespace

TEST_F(TTextEditorEdit, TogglesComments)
{
    for (const TCommentCase &row : Comments) {
        Load(row.Before);
        Editor->SelectAll();
        Press(Qt::Key_Slash, Qt::ControlModifier);
        EXPECT_EQ(Editor->Text(), row.After) << row.Name;
        if (!row.Back)
            continue;
        Editor->SelectAll();
        Press(Qt::Key_Slash, Qt::ControlModifier);
        EXPECT_EQ(Editor->Text(), row.Before) << row.Name;
        Press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(Editor->Text(), row.After) << row.Name;
    }
}

TEST_F(TTextEditorEdit, TrimsTypedBlanksAsTheLineIsLeft)
{
    Load("");
    Type("a  ");
    EXPECT_EQ(Editor->Text(), "a  ") << "still on the line";
    Press(Qt::Key_Return);
    EXPECT_EQ(Editor->Text(), "a\n");
    Press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Editor->Text(), "a  ") << "one step with the new line";

    Load("    a", 0, 5);
    Press(Qt::Key_Return);
    Press(Qt::Key_Return);
    Type("b");
    EXPECT_EQ(Editor->Text(), "    a\n\n    b") << "the indent of the empty line goes too";
    Type("  ");
    Editor->TrimTrailingSpaces();
    EXPECT_EQ(Editor->Text(), "    a\n\n    b") << "for saving";
}

TEST_F(TTextEditorEdit, LeavesBlanksThatWereNotTyped)
{
    Load("loaded  \nnext", 0, 8);
    Type("x");
    Press(Qt::Key_Backspace);
    Press(Qt::Key_Down);
    EXPECT_EQ(Editor->Text(), "loaded  \nnext");
    Load("\nnext");
    Editor->PasteText("pasted  ");
    Press(Qt::Key_Down);
    Editor->TrimTrailingSpaces();
    EXPECT_EQ(Editor->Text(), "pasted  \nnext");
}

TEST_F(TTextEditorEdit, LeavesBlanksInsideAString)
{
    Load("");
    Type("select 'a  ");
    Press(Qt::Key_Return);
    Type("b'  ");
    Press(Qt::Key_Return);
    EXPECT_EQ(Editor->Text(), "select 'a  \nb'\n");
}

TEST_F(TTextEditorEdit, TrimmingDoesNotTakeTheRedoAway)
{
    Load("a\nb", 0, 1);
    Type("  ");
    Editor->SetCaret(1, 0);
    Send(TSci::SCI_UNDO); // of the blanks, before the line counts as left
    Settle();
    EXPECT_TRUE(Send(TSci::SCI_CANREDO));
    Press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(Editor->Text(), "a  \nb");
}

TEST_F(TTextEditorEdit, LeavesTheKeysOfTheWindowsAround)
{
    const QKeySequence keys[] = {
        {"Ctrl+N"},       {"Ctrl+Q"},  {"Ctrl+O"},       {"Ctrl+S"},        {"Ctrl+R"},
        {"Ctrl+Shift+R"}, {"F5"},      {"Ctrl+F4"},      {"Ctrl+Shift+F4"}, {"Ctrl+L"},
        {"Ctrl+T"},       {"Ctrl+U"},  {"Ctrl+Shift+T"}, {"Ctrl+Shift+U"},  {"Ctrl+Shift+L"},
        {"Ctrl+["},       {"Ctrl+\\"}, {"Ctrl+G"},       {"Ctrl+E"},        {"Ctrl+Tab"},
    };
    Load("one\ntwo", 1);
    for (const QKeySequence &key : keys) {
        Press(key[0].key(), key[0].keyboardModifiers()); // nobody has it yet
        int calls = 0;
        QShortcut shortcut(key, Editor.get());
        QObject::connect(&shortcut, &QShortcut::activated, [&] { ++calls; });
        Press(key[0].key(), key[0].keyboardModifiers());
        EXPECT_EQ(calls, 1) << key.toString();
        EXPECT_EQ(Editor->Text(), "one\ntwo") << key.toString();
    }
}

TEST_F(TTextEditorEdit, EscapeAndATabThatIsNoInputAreForTheDialogAround)
{
    QDialog dialog;
    auto *layout = new QVBoxLayout(&dialog);
    auto *editor = new TTextEditor;
    auto *next = new QLineEdit;
    layout->addWidget(editor);
    layout->addWidget(next);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    const auto press = [editor](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        editor->setFocus();
        QTest::keyClick(editor->Editor(), key, modifiers);
    };
    press(Qt::Key_Tab);
    EXPECT_EQ(editor->Text(), "    ");
    editor->SetTabInput(false);
    press(Qt::Key_Tab);
    EXPECT_EQ(editor->Text(), "    ");
    EXPECT_TRUE(next->hasFocus());
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible()) << "closes the search bar only";
    press(Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}
