#include "pages/query/uQueryPageFrame.h"
#include "pages/query/uTextDocumentFile.h"
#include "shell/uWorkbenchFixture.h"
#include "support/uFileUtils.h"
#include "support/uTextCoding.h"

#include <QAbstractScrollArea>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QTest>
#include <csignal>
#include <sys/resource.h>

namespace {

class TQueryFileTest : public TWorkbenchTest
{
protected:
    static QByteArray Bytes(const QString &fileName)
    {
        QByteArray bytes;
        TFileUtils::ReadBinary(fileName, bytes);
        return bytes;
    }
    /// In place, as another editor may do.
    static void WriteBytes(const QString &fileName, const QByteArray &bytes)
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
    EXPECT_TRUE(IsEnabled("actQuerySave")) << "without a file it can always be saved";
    Driver.ExpectFile(file);
    Trigger("actQuerySaveAs");
    EXPECT_EQ(QueryPage().GetTitle(), "query.sql");
    EXPECT_EQ(Find<QLabel>(&QueryPage(), "labFileName")->text(), "File name: " + file);
    EXPECT_EQ(Bytes(file), "\xEF\xBB\xBFSELECT '\xD0\x96'") << "a new file is UTF-8 with mark";
    EXPECT_FALSE(IsEnabled("actQuerySave")) << "nothing to save";
    OpenFile(file);
    EXPECT_EQ(workspace.GetPagesCaption(), QStringList("query.sql")) << "it is open already";
    QueryEditor().PasteText("-- more\n");
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

const TFileForm Forms[] = {
    {"Utf8WithoutMark", "\xD0\x96\na", "X\xD0\x96\na"},
    {"Utf8WithMarkAndCrLf", "\xEF\xBB\xBF\xD0\x96\r\n", "\xEF\xBB\xBFX\xD0\x96\r\n"},
    {"MixedLineEnds", "a\r\nb\nc\rd", "Xa\r\nb\nc\rd"},
    {"LegacyCodePage", "\xCF\xF0\n", "X\xCF\xF0\n", "windows-1251"},
    {"NulBytes", QByteArray("a\0b", 3), QByteArray("Xa\0b", 4)},
};

TEST_F(TQueryFileTest, FormsComeBackAsTheyCame)
{
    OpenWorkspace();
    for (const TFileForm &form : Forms) {
        const QString file = FilePath(QString(form.Name) + ".sql");
        WriteBytes(file, form.Bytes);
        TTextCoding::SetLegacyCodePage(form.CodePage);
        OpenFile(file);
        QueryEditor().SetCaret(0, 0);
        QueryEditor().PasteText("X");
        Trigger("actQuerySave");
        TTextCoding::SetLegacyCodePage({});
        EXPECT_EQ(Bytes(file), form.WithX) << form.Name;
    }
}

TEST_F(TQueryFileTest, AFileThatCannotBeDecodedIsReadOnly)
{
    const QString file = FilePath("broken.sql");
    const QByteArray bytes("SELECT '\xff\xfe\xfa'");
    WriteBytes(file, bytes);
    OpenWorkspace();
    OpenFile(file);
    EXPECT_TRUE(QueryEditor().IsReadOnly());
    QTest::keyClick(QueryEditor().findChild<QAbstractScrollArea *>(), 'x');
    Workspace().CloseAllPages();
    EXPECT_EQ(Bytes(file), bytes);
}

TEST_F(TQueryFileTest, AFileChangedByOthersIsNotOverwrittenWithoutAQuestion)
{
    const QString file = FilePath("shared.sql");
    WriteBytes(file, "mine");
    OpenWorkspace();
    OpenFile(file);
    QueryEditor().PasteText("more ");
    WriteBytes(file, "somebody else's longer text");
    Answer("butNo");
    Trigger("actQuerySave");
    EXPECT_EQ(Bytes(file), "somebody else's longer text");
    EXPECT_TRUE(IsEnabled("actQuerySave")) << "still unsaved";
    Answer("butYes");
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
    QueryEditor().PasteText("more ");
    // Closing saves; that fails, says so and asks; No keeps the page.
    for (const char *answer : {"butNo", "butYes"}) {
        EXPECT_TRUE(QueryPage().GetText().contains("more "));
        Answer("butYes"); // the file is gone: overwrite
        ExpectError("gone/query.sql");
        Answer(answer);
        Workspace().CloseActivePage();
    }
    EXPECT_EQ(Workspace().GetPagesCaption(), QStringList());
}

TEST_F(TQueryFileTest, AFullDiskKeepsTextAndFile)
{
    const QString file = FilePath("kept.sql");
    WriteBytes(file, "SELECT 'as it was'");
    OpenWorkspace();
    OpenFile(file);
    QueryEditor().PasteText(QString(100'000, 'x'));
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

} // namespace
