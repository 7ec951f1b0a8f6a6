#include "pages/query/uQueryPageFrame.h"
#include "pages/query/uTextDocumentFile.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uManagerFrame.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uTextCoding.h"
#include "widgets/uTextEditor.h"

#include <QAbstractScrollArea>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTest>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace {

class TQueryFileTest : public TWorkbenchTest
{
protected:
    QByteArray Bytes(const QString &fileName)
    {
        QFile file(fileName);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << fileName.toStdString();
        return file.readAll();
    }
    void WriteBytes(const QString &fileName, const QByteArray &bytes)
    {
        QFile file(fileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    void OpenFile(const QString &fileName)
    {
        Driver.ExpectFile(fileName);
        Trigger("actQueryOpen");
    }
};

TEST_F(TQueryFileTest, SavesAndOpensAFile)
{
    TManagerFrame &workspace = OpenWorkspace();
    NewQuery("SELECT 'Ж'");
    const QString file = FilePath("query.sql");
    Driver.ExpectFile(file);
    Trigger("actQuerySaveAs");
    EXPECT_EQ(QueryPage().GetTitle(), "query.sql");
    EXPECT_EQ(Find<QLabel>(&QueryPage(), "labFileName")->text(), "File name: " + file);
    EXPECT_EQ(Bytes(file), "\xEF\xBB\xBFSELECT '\xD0\x96'") << "a new file is UTF-8 with mark";
    EXPECT_FALSE(IsEnabled("actQuerySave")) << "nothing to save";
    OpenFile(file);
    EXPECT_EQ(workspace.GetPagesCaption(), QStringList("query.sql")) << "it is open already";
    Find<TTextEditor>(&QueryPage(), "edEditor")->PasteText("-- more\n");
    EXPECT_TRUE(IsEnabled("actQuerySave"));
    workspace.CloseAllPages(); // saves without asking
    EXPECT_TRUE(Bytes(file).contains("-- more"));
    Trigger("actQueryNew");
    Driver.ExpectFile({});
    Trigger("actQuerySaveAs"); // cancelled
    EXPECT_EQ(QueryPage().GetTitle(), "Query");
}

struct TFileForm
{
    const char *Name;
    QByteArray Bytes;
    QByteArray WithX; // after an X was typed at the start and the file was saved
    QString CodePage = {};
};

class TFileForms : public TQueryFileTest, public ::testing::WithParamInterface<TFileForm>
{};

TEST_P(TFileForms, ComeBackAsTheyCame)
{
    const QString file = FilePath("form.sql");
    WriteBytes(file, GetParam().Bytes);
    OpenWorkspace();
    TTextCoding::SetLegacyCodePage(GetParam().CodePage);
    OpenFile(file);
    auto *editor = Find<TTextEditor>(&QueryPage(), "edEditor");
    editor->SetCaret(0, 0);
    editor->PasteText("X");
    Trigger("actQuerySave");
    TTextCoding::SetLegacyCodePage({});
    EXPECT_EQ(Bytes(file), GetParam().WithX);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, TFileForms,
    ::testing::Values(TFileForm{"Utf8WithoutMark", "\xD0\x96\na", "X\xD0\x96\na"},
                      TFileForm{"Utf8WithMarkAndCrLf", "\xEF\xBB\xBF\xD0\x96\r\n",
                                "\xEF\xBB\xBFX\xD0\x96\r\n"},
                      TFileForm{"MixedLineEnds", "a\r\nb\nc\rd", "Xa\r\nb\nc\rd"},
                      TFileForm{"LegacyCodePage", "\xCF\xF0\n", "X\xCF\xF0\n", "windows-1251"},
                      TFileForm{"NulBytes", QByteArray("a\0b", 3), QByteArray("Xa\0b", 4)}),
    [](const auto &info) { return std::string(info.param.Name); });

TEST_F(TQueryFileTest, AFileThatCannotBeDecodedIsReadOnly)
{
    const QString file = FilePath("broken.sql");
    const QByteArray bytes("SELECT '\xff\xfe\xfa'");
    WriteBytes(file, bytes);
    OpenWorkspace();
    OpenFile(file);
    auto *editor = Find<TTextEditor>(&QueryPage(), "edEditor");
    EXPECT_TRUE(editor->IsReadOnly());
    QTest::keyClick(editor->findChild<QAbstractScrollArea *>(), 'x');
    Window->GetActiveManagerFrame()->CloseAllPages();
    EXPECT_EQ(Bytes(file), bytes);
}

TEST_F(TQueryFileTest, AFileChangedByOthersIsNotOverwrittenWithoutAQuestion)
{
    const QString file = FilePath("shared.sql");
    WriteBytes(file, "mine");
    OpenWorkspace();
    OpenFile(file);
    Find<TTextEditor>(&QueryPage(), "edEditor")->PasteText("more ");
    WriteBytes(file, "somebody else's longer text");
    const auto answer = [this](const char *button) {
        Driver.Expect([button](QWidget *box) { TGuiTools::Click(box, button); });
    };
    answer("butNo");
    Trigger("actQuerySave");
    EXPECT_EQ(Bytes(file), "somebody else's longer text");
    EXPECT_TRUE(IsEnabled("actQuerySave")) << "still unsaved";
    answer("butYes");
    Trigger("actQuerySave");
    EXPECT_TRUE(Bytes(file).contains("more mine"));
}

TEST_F(TQueryFileTest, AFolderThatTakesNothingKeepsTheText)
{
    OpenWorkspace();
    NewQuery("SELECT 'precious'");
    WriteBytes(FilePath("file"), "a file, not a folder");
    const QString impossible = FilePath("file/below.sql");
    EXPECT_THROW(TTextDocumentFile().SaveAs(impossible, "x"), EException);
    const QString file = FilePath("gone/query.sql");
    ASSERT_TRUE(QDir().mkpath(FilePath("gone")));
    Driver.ExpectFile(file);
    Trigger("actQuerySaveAs");
    ASSERT_TRUE(QDir(FilePath("gone")).removeRecursively());
    Find<TTextEditor>(&QueryPage(), "edEditor")->PasteText("more ");
    // Closing saves; that fails, says so and asks; No keeps the page.
    Driver.Expect(
        [](QWidget *box) { TGuiTools::Click(box, "butYes"); }); // the file is gone: overwrite
    ExpectError("gone/query.sql");
    Driver.Expect([](QWidget *box) { TGuiTools::Click(box, "butNo"); });
    Window->GetActiveManagerFrame()->CloseActivePage();
    EXPECT_TRUE(QueryPage().GetText().contains("more "));
    Driver.Expect([](QWidget *box) { TGuiTools::Click(box, "butYes"); });
    ExpectError("gone/query.sql");
    Driver.Expect([](QWidget *box) { TGuiTools::Click(box, "butYes"); });
    Window->GetActiveManagerFrame()->CloseActivePage();
    EXPECT_EQ(Window->GetActiveManagerFrame()->GetPagesCaption(), QStringList());
}

TEST_F(TQueryFileTest, AFullDiskKeepsTextAndFile)
{
    const QString file = FilePath("kept.sql");
    WriteBytes(file, "SELECT 'as it was'");
    OpenWorkspace();
    OpenFile(file);
    Find<TTextEditor>(&QueryPage(), "edEditor")->PasteText(QString(100'000, 'x'));
    {
        // A limit on the size of files refuses in the middle of a write, as a full disk does.
        const auto before = std::signal(SIGXFSZ, SIG_IGN);
        rlimit unlimited = {};
        getrlimit(RLIMIT_FSIZE, &unlimited);
        const rlimit full = {4096, unlimited.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        ExpectError("kept.sql");
        Trigger("actQuerySave");
        setrlimit(RLIMIT_FSIZE, &unlimited);
        std::signal(SIGXFSZ, before);
    }
    EXPECT_EQ(Bytes(file), "SELECT 'as it was'");
    EXPECT_TRUE(QueryPage().GetText().startsWith("xxx"));
    EXPECT_EQ(QDir(FilePath("")).entryList({"kept*"}).size(), 1) << "no torn file is left";
    Trigger("actQuerySave");
    EXPECT_GT(Bytes(file).size(), 100'000) << "the next try works";
}

TEST_F(TQueryFileTest, AMissingFileOpensNothing)
{
    TManagerFrame &workspace = OpenWorkspace();
    workspace.PageUtils().ShowQueryFromFile(FilePath("missing.sql"), {}, 0, true);
    EXPECT_TRUE(workspace.GetPagesCaption().isEmpty());
}

} // namespace
