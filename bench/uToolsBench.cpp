#include "app/uAppSession.h"
#include "client/uMyQuery.h"
#include "tools/uCodeComplete.h"
#include "tools/uDatasetExportText.h"
#include "uBench.h"
#include "uBenchRows.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <cstring>

namespace {

const QTemporaryDir &Folder()
{
    static const QTemporaryDir folder;
    return folder;
}

double Export()
{
    TMyConnection connection;
    connection.Server = "127.0.0.1";
    connection.Port = TBench::ServerPort();
    connection.Username = "root";
    connection.Database = TBenchRows::Database();
    connection.Options.Charset = "utf8mb4";
    connection.Options.UseUnicode = true;
    connection.Connect();
    return TBench::Seconds([&] {
        TMyQuery query(&connection);
        query.SetSQL(TBenchRows::Select());
        QFile file(Folder().filePath("export.txt"));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            qFatal("no file");
        TDatasetExportText exporter;
        exporter.FOptions.ColumnTitles = true;
        exporter.FDataset = &query;
        exporter.FStream = &file;
        exporter.Export();
    });
}

double ExportPeer()
{
    const QString command =
        QString("mariadb --protocol=tcp -h 127.0.0.1 -u root -P %1 -B -q %2 -e '%3' > %4")
            .arg(QString::number(TBench::ServerPort()), TBenchRows::Database(),
                 TBenchRows::Select(), Folder().filePath("peer.txt"));
    return TBench::Seconds([&] {
        if (QProcess::execute("sh", {"-c", command}) != 0)
            qFatal("failed: %s", qPrintable(command));
    });
}

// SQL of every kind, ten million characters of it.
const QString &SqlText()
{
    static const QString text = [] {
        const QString part =
            "INSERT INTO `orders` (id, name, note) VALUES (1, 'it''s a text', 2);\r\n"
            "-- a comment at the end of a line\r\n"
            "SELECT o.id, o.name, SUM(l.amount * l.price) AS total\r\n"
            "FROM orders AS o JOIN lines AS l ON l.order_id = o.id\r\n"
            "/* over\r\ntwo lines */ WHERE o.name LIKE '%word%' GROUP BY o.id;\r\n"
            "UPDATE products SET price = price * 1.1 WHERE category_id IN (1, 2);\r\n";
        QString all;
        while (all.size() < 10000000)
            all += part;
        return all;
    }();
    return text;
}

// As in an editor, where one scanner lives with its text and scans it anew after a change.
double Scan()
{
    SqlText();
    static TSpuManager manager([] { return SqlText(); });
    manager.RequestProcess();
    return TBench::Seconds([] { manager.Process(); }) * 1000;
}

double ScanPeer()
{
    static const QByteArray bytes = SqlText().toUtf8();
    volatile qint64 found = 0;
    return TBench::Seconds([&] {
               for (const char wanted : {'\'', '#', '-', '*', '/'}) {
                   const char *at = bytes.constData();
                   const char *const end = at + bytes.size();
                   while ((at = static_cast<const char *>(
                               std::memchr(at, wanted, static_cast<size_t>(end - at))))) {
                       ++at;
                       found = found + 1;
                   }
               }
           }) *
           1000;
}

class TNames : public TCodeCompleteBaseManager
{
protected:
    void FillItems(QList<TCodeCompleteItem> &items) override
    {
        for (int i = 0; i < 50000; ++i)
            items.append({"column_name_" + QString::number(i), {}});
    }
};

class TEditor : public TCodeCompleteEditor
{
public:
    QString Text() const override { return FText; }
    QString LineBeforeCaret() const override { return FText; }
    qint32 CaretLine() const override { return 1; }
    qint32 CaretChar() const override { return static_cast<qint32>(FText.size()) + 1; }
    QString FText;
};

double Gate()
{
    TNames names;
    TEditor editor;
    TSynEditCodeCompleteManager manager(editor);
    manager.AppendManager(&names);
    manager.Matches();
    constexpr int Keys = 20;
    const double seconds = TBench::Seconds([&] {
        for (int i = 0; i < Keys; ++i) {
            editor.FText = "column_name_49";
            manager.DataModified();
            if (manager.Matches().isEmpty())
                qFatal("no match");
        }
    });
    return seconds * 1000 / Keys;
}

QString PageText(int page)
{
    return page == 0 ? SqlText().left(5 << 20) : SqlText().left(2000);
}

constexpr int Pages = 40;

double Session()
{
    QDir(Folder().path()).mkpath("sessions");
    const QString folder = Folder().filePath("sessions");
    QFile::remove(folder + "/bench.xml"); // of the round before, which a first open would read
    TAppSession read;
    const double seconds = TBench::Seconds([&] {
        {
            TAppSession session;
            session.Open(folder, "bench");
            for (int i = 0; i < Pages; ++i)
                session.Config().SetValue("pages.page_" + QString::number(i), "text", PageText(i),
                                          true);
            session.Close();
        }
        read.Open(folder, "bench");
        if (read.Config().GetValue("pages.page_0", "text", QString(), true) != PageText(0))
            qFatal("the text did not come back");
    });
    read.Close();
    return seconds;
}

// The same texts in the same form, written and parsed with nothing around it.
double SessionPeer()
{
    const QString fileName = Folder().filePath("bare.xml");
    return TBench::Seconds([&] {
        QDomDocument document;
        QDomElement root = document.createElement("config");
        document.appendChild(root);
        for (int i = 0; i < Pages; ++i) {
            QDomElement page = document.createElement("page_" + QString::number(i));
            page.appendChild(
                document.createTextNode(QString::fromLatin1(PageText(i).toUtf8().toHex())));
            root.appendChild(page);
        }
        QFile file(fileName);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("no file");
        file.write(document.toByteArray(8));
        file.close();
        QDomDocument read;
        if (!file.open(QIODevice::ReadOnly) || !read.setContent(&file))
            qFatal("the bare file cannot be read");
    });
}

const TBenchRegistrar Rows([] {
    return std::vector<TBenchRow>{
        {.What = "delimited export of 1,000,000 × 10, fetch included",
         .PeerName = "mariadb -B -q into a file",
         .Unit = "s",
         .Limit = 1,
         .Product = Export,
         .Peer = ExportPeer,
         .Prepare = TBenchRows::Prepare,
         .Rounds = 3},
        {.What = "strings and comments of a text of 10 MB",
         .PeerName = "a memchr pass for each of five characters",
         .Unit = "ms",
         .Limit = 2,
         .Product = Scan,
         .Peer = ScanPeer},
        {.What = "completion among 50,000 items, a key",
         .PeerName = "5 ms",
         .Unit = "ms",
         .Product = Gate,
         .Peer = [] { return 5.0; }},
        {.What = "session of 40 pages, one with 5 MB, written and read",
         .PeerName = "the same XML bare",
         .Unit = "s",
         .Limit = 3,
         .Product = Session,
         .Peer = SessionPeer},
    };
});

} // namespace
