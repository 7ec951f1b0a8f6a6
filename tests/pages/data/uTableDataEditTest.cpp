#include "pages/data/uTableDataFixture.h"

#include "core/uServerProfile.h"
#include "support/uFileUtils.h"

#include <QBuffer>
#include <QCheckBox>
#include <QImage>
#include <QToolButton>

namespace {

class TTableDataEditTest : public TTableDataTest
{
protected:
    void Edit(int row, int column, const QString &text)
    {
        Focus(row, column);
        QTest::keyClick(&Grid(), Qt::Key_F2);
        ASSERT_NE(Editor(), nullptr) << Note().toStdString();
        Editor()->selectAll();
        QTest::keyClicks(Editor(), text);
    }
    void Write(int row, int column, const QString &text)
    {
        Edit(row, column, text);
        QTest::keyClick(Editor(), Qt::Key_Return);
        TTestLoop::Settle();
    }
    QLineEdit *Editor() { return Grid().findChild<QLineEdit *>("edCell"); }
    QString Note()
    {
        const auto *note = Grid().findChild<QLabel *>("labNote");
        return note ? note->text() : QString();
    }
    /// Works on the record of a row and presses OK.
    void OnRecordOf(int row, const std::function<void(TVerticalGrid &)> &work)
    {
        Focus(row);
        OnRecord(work);
        Run("actUpdate");
    }
    /// The " edit " button of a row, then the dialog it opens: `work`, then OK.
    void OnDialogOf(TVerticalGrid &grid, const QString &row,
                    const std::function<void(QWidget *)> &work)
    {
        Driver.Expect([work](QWidget *dialog) {
            work(dialog);
            TGuiTools::Click(dialog, "butOK");
        });
        TGuiTools::Click(Find<QToolButton>(&grid, row + "edit"));
    }
    static void Choose(TVerticalGrid &grid, const QString &row, const QString &text)
    {
        auto *combo = Find<QComboBox>(&grid, row);
        const int index = combo->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        combo->setCurrentIndex(index);
        Q_EMIT combo->activated(index);
    }
    /// Types over the whole of a text in its dialog.
    static void Retype(QWidget *dialog, const QString &before, const QString &text)
    {
        auto *editor = Find<TTextEditor>(dialog, "edEditor");
        EXPECT_EQ(editor->Text(), before);
        editor->SelectAll();
        editor->PasteText(text);
    }
    void Import(QWidget *dialog, const QByteArray &bytes)
    {
        TFileUtils::WriteBinary(FilePath("in"), bytes);
        Driver.ExpectFile(FilePath("in"));
        Find<QAction>(dialog, "actImport")->trigger();
    }
};

TEST_F(TTableDataEditTest, CellsOfAnyPageAreWritten)
{
    // Blanks, quotes, points, other letters, and as long as a name may be.
    const QString name = "a b.'c\" ж" + QString(64 - 9, 'x');
    Exec("CREATE TABLE `" + name + "` (`k e.y` INT PRIMARY KEY, `from` VARCHAR(20))");
    Exec("INSERT INTO `" + name + "` SELECT seq, seq FROM seq_1_to_250");
    Exec("CREATE TABLE t (id INT PRIMARY KEY, n INT UNIQUE)");
    Exec("INSERT INTO t SELECT seq, seq FROM seq_1_to_250");
    Open(name);
    Run("actEditMode");
    Run("actNextPage");
    Write(4, 1, "page 2");
    EXPECT_EQ(Note(), "");
    EXPECT_EQ(Value("SELECT `from` FROM `" + name + "` WHERE `k e.y` = 105"), "page 2");
    Run("actFilter");
    Filter("`k e.y` IN (SELECT n FROM (SELECT 7 AS n) AS x)");
    Run("actRefresh");
    Write(0, 1, "filtered");
    EXPECT_EQ(Value("SELECT `from` FROM `" + name + "` WHERE `k e.y` = 7"), "filtered");
    Run("actEditMode");
    OnRecordOf(0, [](TVerticalGrid &grid) { Type(grid, "from", "record"); });
    EXPECT_EQ(Value("SELECT `from` FROM `" + name + "` WHERE `k e.y` = 7"), "record");

    // What is typed is written ahead of what would drop it; a refusal stops that.
    Open("t");
    Run("actEditMode");
    Edit(0, 1, "2");
    for (const char *action : {"actNextPage", "actEditMode", "actFilter", "actRefresh"}) {
        Run(action);
        ASSERT_NE(Editor(), nullptr) << action;
        EXPECT_EQ(Editor()->text(), "2");
    }
    EXPECT_EQ(PageNumber(), "1");
    EXPECT_TRUE(Part<QAction>("actEditMode")->isChecked());
    EXPECT_FALSE(Part<QAction>("actFilter")->isChecked());
    Trigger("actRefresh");
    ASSERT_NE(Editor(), nullptr) << "the workspace's own refresh waits too";
    Editor()->selectAll();
    QTest::keyClicks(Editor(), "1000");
    Run("actNextPage");
    EXPECT_EQ(Value("SELECT n FROM t WHERE id = 1"), "1000");
    EXPECT_EQ(Cell(0, 0), "101");
}

TEST_F(TTableDataEditTest, APageAndWhatIsTypedOutliveTheServersAbsence)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s VARCHAR(20))");
    Exec("INSERT INTO t VALUES (1, 'one')");
    TTcpProxy proxy(Server().Host(), Server().Port());
    OpenWorkspaceBehind(proxy);
    Show(Database(), "t");
    const QPointer<TTableDataFrame> frame = FFrame;
    Run("actEditMode");
    Edit(0, 1, "typed");
    proxy.Vanish();
    const auto refresh = [&](const char *window) {
        Trigger("actRefresh");
        TTestLoop::Settle();
        return frame && frame->isVisible() ? QString() : QString(window);
    };
    ASSERT_EQ(refresh("gone while it is edited"), QString());
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->text(), "typed");
    QTest::keyClick(Editor(), Qt::Key_Escape);
    ASSERT_EQ(refresh("gone"), QString());
    proxy.Resume();
    Run("actRefresh");
    EXPECT_EQ(Cell(0, 1), "one");

    // A table that another session drops takes its page along, but not what is typed there.
    Edit(0, 1, "more");
    Exec("DROP TABLE t");
    ASSERT_EQ(refresh("gone with its table"), QString());
    EXPECT_TRUE(Note().contains("doesn't exist")) << Note().toStdString();
    QTest::keyClick(Editor(), Qt::Key_Escape);
    EXPECT_NE(refresh("gone with its table"), QString());
}

TEST_F(TTableDataEditTest, ARowKeepsWhatItsTypesTellApart)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, k BIT(64), vb VARBINARY(10), tx TEXT, e "
         "ENUM('a','it''s','b\\\\c',"
         "'') , o SET('x','y','z'), y BOOL, b BLOB, z DATETIME(6), tm TIME(3))");
    Exec("SET sql_mode = ''; ");
    Exec("INSERT INTO t VALUES (1, 1, 'ab', ' blanks ', 'a', 'y', 2, '', '2000-01-02 "
         "03:04:05.678901', "
         "'-100:00:00.5'), (2, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL)");
    Open("t");
    OnRecordOf(0, [this](TVerticalGrid &grid) {
        EXPECT_EQ(grid.Row("b")->Text(), "BLOB: 0 B");
        EXPECT_EQ(grid.Row("z")->Text(), "2000-01-02 03:04:05.678901");
        EXPECT_EQ(grid.Row("tm")->Text(), "-100:00:00.500");
        Type(grid, "k", "18446744073709551615");
        OnDialogOf(grid, "vb", [](QWidget *dialog) { Retype(dialog, "0x6162", "0x00FF"); });
        OnDialogOf(grid, "tx",
                   [](QWidget *dialog) { Retype(dialog, " blanks ", "  one\n-- two;\nthree  "); });
        OnDialogOf(grid, "b", [](QWidget *) {}); // a mere look
        EXPECT_GE(Find<QComboBox>(&grid, "e")->findText("b\\c"), 0);
        Choose(grid, "e", "it's");
        for (int i = 0; i < 2; ++i)
            Find<QCheckBox>(&grid, "y")->click(); // there and back
    });
    EXPECT_EQ(Rows("SELECT HEX(k), HEX(vb), tx, e, o, y, b, z FROM t WHERE id = 1").first(),
              (QStringList{"FFFFFFFFFFFFFFFF", "00FF", "one\n-- two;\nthree", "it's", "y", "2", "",
                           "2000-01-02 03:04:05.678901"}));

    OnRecordOf(0, [this](TVerticalGrid &grid) {
        OnDialogOf(grid, "tx", [](QWidget *dialog) { Retype(dialog, "one\n-- two;\nthree", " "); });
        Choose(grid, "e", "NULL");
        SetNull(grid, "y");
        EXPECT_EQ(Find<QCheckBox>(&grid, "y")->checkState(), Qt::PartiallyChecked);
    });
    EXPECT_EQ(LastUpdate(), "`tx` = NULL, `e` = NULL, `y` = NULL");

    // NULL everywhere, and the empty member beside it.
    OnRecordOf(1, [](TVerticalGrid &grid) {
        EXPECT_EQ(Find<QCheckBox>(&grid, "y")->checkState(), Qt::PartiallyChecked);
        EXPECT_EQ(grid.Row("b")->Text(), "NULL");
        Choose(grid, "e", "");
        Find<QCheckBox>(&grid, "y")->click();
    });
    EXPECT_EQ(LastUpdate(), "`e` = '', `y` = TRUE");
}

TEST_F(TTableDataEditTest, ACellThatShowsALengthIsEditedWhole)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s TEXT CHECK (s <> 'bad'), b BLOB)");
    Exec("INSERT INTO t VALUES (1, 'one\r\ntwo', 'bytes')");
    Open("t");
    Run("actEditMode");
    const auto type = [this](const QString &before, const QString &text) {
        Driver.Expect("s", [=](QWidget *dialog) {
            Retype(dialog, before, text);
            TGuiTools::Click(dialog, "butOK");
        });
    };
    type("one\r\ntwo", "bad");
    ExpectError("CONSTRAINT");
    type("bad", " good ");
    Focus(0, 1);
    QTest::keyClick(&Grid(), Qt::Key_F2);
    TTestLoop::Settle();
    EXPECT_EQ(Value("SELECT s FROM t"), " good ");
    EXPECT_EQ(Cell(0, 1), "6 B");
}

TEST_F(TTableDataEditTest, ARowThatIsNoLongerThereIsTold)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, s VARCHAR(20))");
    Exec("CREATE TABLE f (id FLOAT PRIMARY KEY)");
    Exec("INSERT INTO t VALUES (1, 'one'), (2, 'two')");
    Exec("INSERT INTO f VALUES (1.1)");
    Open("t");
    Focus(0);
    Driver.Expect([this](QWidget *dialog) {
        auto &grid = *Find<TVerticalGrid>(dialog, "vgRecord");
        Type(grid, "s", "typed");
        Exec("UPDATE t SET id = 5 WHERE id = 1");
        ExpectError("The record was not changed: it does not exist any more.");
        TGuiTools::Click(dialog, "butOK");
        EXPECT_EQ(grid.Row("s")->Text(), "typed");
        Exec("UPDATE t SET id = 1 WHERE id = 5");
        TGuiTools::Click(dialog, "butOK");
    });
    Run("actUpdate");
    EXPECT_EQ(Value("SELECT s FROM t WHERE id = 1"), "typed");
    Focus(1);
    Exec("DELETE FROM t WHERE id = 2");
    Answer("butYes");
    ExpectError("The record was not deleted: it does not exist any more.");
    Run("actDelete");
    ExpectError("The record is not found");
    Run("actUpdate");
    Exec("RENAME TABLE t TO gone");
    ExpectError("doesn't exist"); // and not that the row went
    Run("actUpdate");
    Open("f");
    ExpectError("is a FLOAT");
    Run("actDelete");
    EXPECT_EQ(Value("SELECT COUNT(*) FROM f"), "1");
}

QByteArray Picture(const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    image.save(&buffer, format);
    return bytes;
}

TEST_F(TTableDataEditTest, BytesComeFromFilesAndGoToFiles)
{
    Exec("CREATE TABLE t (id INT PRIMARY KEY, b LONGBLOB)");
    Exec("INSERT INTO t VALUES (1, 'plain')");
    Open("t");
    const QByteArray png = Picture("PNG"), jpeg = Picture("JPEG");
    const QByteArray broken = png.left(20) + "no picture", cut = jpeg.chopped(1);
    ASSERT_FALSE(png.isEmpty() || jpeg.isEmpty());
    const auto isPicture = [](QWidget *dialog) {
        return Find<QLabel>(dialog, "labImage")->isVisible();
    };
    OnRecordOf(0, [&](TVerticalGrid &grid) {
        OnDialogOf(grid, "b", [&](QWidget *dialog) {
            ASSERT_NE(dialog->focusWidget(), nullptr);
            EXPECT_EQ(qobject_cast<QToolButton *>(dialog->focusWidget()), nullptr)
                << "Tab reaches the tool bar, but nobody starts there";
            for (const QByteArray &bytes : {png, jpeg}) {
                Import(dialog, bytes);
                EXPECT_TRUE(isPicture(dialog));
            }
            for (const QByteArray &bytes : {broken, cut}) {
                Import(dialog, bytes);
                EXPECT_FALSE(isPicture(dialog)) << "its size is shown";
            }
            // A file that cannot be written leaves the bytes as they are.
            Driver.ExpectFile("/proc/out");
            ExpectError("/proc/out");
            Find<QAction>(dialog, "actExport")->trigger();
            Driver.ExpectFile(FilePath("out"));
            Find<QAction>(dialog, "actExport")->trigger();
        });
        EXPECT_TRUE(grid.Row("b")->Text().startsWith("BLOB: "));
    });
    QByteArray written;
    TFileUtils::ReadBinary(FilePath("out"), written);
    EXPECT_EQ(written, cut);
    EXPECT_EQ(Bytes("SELECT b FROM t"), cut);
}

TEST_F(TTableDataEditTest, AHundredMegabytesAreReadOnceAndNotSentBack)
{
    const auto server = TTestServer::Start({"--max-allowed-packet=300M"});
    const TTestDatabase database(*server);
    database.Exec("CREATE TABLE t (id INT PRIMARY KEY, b LONGBLOB, n INT)");
    database.Exec("INSERT INTO t VALUES (1, REPEAT('x', 100000000), 1)");
    OpenWorkspaceOn(ServerProfile(*server));
    Show(database, "t");
    EXPECT_EQ(Cell(0, 1), "95.4 MB");
    OnRecordOf(0, [this](TVerticalGrid &grid) {
        EXPECT_EQ(grid.Row("b")->Text(), "BLOB: 95.4 MB");
        OnDialogOf(grid, "b", [](QWidget *dialog) {
            EXPECT_EQ(Find<QLabel>(dialog, "labSize")->text(), "95.4 MB");
        });
        Type(grid, "n", "2");
    });
    EXPECT_EQ(LastUpdate(), "`n` = 2");
    const QByteArray bytes(5'000'000, '\xFF');
    OnRecordOf(0, [&](TVerticalGrid &grid) {
        OnDialogOf(grid, "b", [&](QWidget *dialog) { Import(dialog, bytes); });
    });
    EXPECT_EQ(database.Bytes("SELECT b FROM t"), bytes);
}

TEST_F(TTableDataEditTest, KeysOfDatesAndDecimalsMeetTheirRowAlone)
{
    struct TKey
    {
        const char *Type, *Value, *Neighbour;
    };
    for (const TKey &key :
         {TKey{"DATE", "2024-02-29", "2024-03-01"},
          {"DATETIME(6)", "2024-02-29 00:00:00.000001", "2024-02-29 00:00:00.000002"},
          {"TIME", "-10:00:00", "10:00:00"},
          {"DECIMAL(30,10)", "12345678901234567890.0123456789", "12345678901234567890.0123456788"},
          {"BIGINT UNSIGNED", "18446744073709551615", "18446744073709551614"},
          {"VARBINARY(4)", "a", "A"}}) {
        SCOPED_TRACE(key.Type);
        Exec(QString("CREATE OR REPLACE TABLE t (id %1 PRIMARY KEY, n INT)").arg(key.Type));
        Exec(QString("INSERT INTO t VALUES ('%1', 1), ('%2', 2)").arg(key.Value, key.Neighbour));
        Open("t");
        Run("actRefresh");
        TTestLoop::Settle();
        const int row = Cell(0, 1) == "1" ? 0 : 1;
        OnRecordOf(row, [](TVerticalGrid &grid) { Type(grid, "n", "5"); });
        EXPECT_EQ(Value("SELECT GROUP_CONCAT(n ORDER BY n) FROM t"), "2,5");
        Focus(Cell(0, 1) == "5" ? 0 : 1);
        Answer("butYes");
        Run("actDelete");
        EXPECT_EQ(Value("SELECT GROUP_CONCAT(n ORDER BY n) FROM t"), "2");
    }
}

TEST_F(TTableDataEditTest, EditsOnMySql9)
{
    SKIP_WITHOUT_MYSQL9();
    const TTestDatabase database(*TTestServer::MySql9());
    database.Exec("CREATE TABLE t (id INT PRIMARY KEY, e ENUM('a','it''s'), d DATETIME(6))");
    database.Exec("INSERT INTO t VALUES (1, 'a', NULL), (2, 'a', NULL)");
    database.Exec("CREATE VIEW v AS SELECT e AS x, id, d FROM t");
    OpenWorkspaceOn(ServerProfile(*TTestServer::MySql9()));
    Show(database, "v");
    Run("actEditMode");
    Write(0, 0, "it's");
    EXPECT_EQ(Note(), "");
    Write(0, 2, "2024-02-29 23:59:59.5");
    EXPECT_EQ(database.Value("SELECT CONCAT(e, d) FROM t WHERE id = 1"),
              "it's2024-02-29 23:59:59.500000");
    Show(database, "t");
    OnRecordOf(1, [](TVerticalGrid &grid) {
        Choose(grid, "e", "it's");
        Type(grid, "d", "2024-01-01");
    });
    EXPECT_EQ(database.Value("SELECT CONCAT(e, d) FROM t WHERE id = 2"),
              "it's2024-01-01 00:00:00.000000");
}

} // namespace
