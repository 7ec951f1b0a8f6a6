#include "sql/uDbmSqlStringFormatter.h"
#include "uBench.h"

#include <cstring>
#include <mysql.h>
#include <stdexcept>

namespace {

constexpr qsizetype Chars = 1000;
constexpr int Times = 100000;

QString Clean()
{
    QString text;
    while (text.size() < Chars)
        text += "The quick brown fox jumps over the lazy dog, again and again. ";
    return text.left(Chars);
}

// One character in twenty needs a backslash.
QString Dirty()
{
    QString text = Clean();
    for (qsizetype i = 7; i < text.size(); i += 20)
        text[i] = i % 40 == 7 ? u'\'' : u'\n';
    return text;
}

double PerSecond(const std::function<void()> &once)
{
    return Times / TBench::Seconds([&] {
               for (int i = 0; i < Times; ++i)
                   once();
           });
}

void KeepAlive(const void *data)
{
    asm volatile("" : : "r"(data) : "memory");
}

double EscapeRate(const QString &text, bool unchanged)
{
    return PerSecond([&] {
        const QString escaped = TDbmSqlStringFormatter::Format(text);
        if ((escaped.constData() == text.constData()) != unchanged)
            throw std::runtime_error("an allocation too many or too few");
        KeepAlive(escaped.constData());
    });
}

double CopyRate()
{
    const QString text = Clean();
    QString target(text.size(), u' ');
    QChar *to = target.data();
    return PerSecond([&] {
        std::memcpy(to, text.constData(), size_t(text.size()) * sizeof(QChar));
        KeepAlive(to);
    });
}

// The client library escapes UTF-8; the text is the same.
double LibraryRate()
{
    st_mysql *session = mysql_init(nullptr);
    const QByteArray text = Dirty().toUtf8();
    QByteArray target(text.size() * 2 + 1, '\0');
    const double rate = PerSecond([&] {
        mysql_real_escape_string(session, target.data(), text.constData(),
                                 static_cast<unsigned long>(text.size()));
        KeepAlive(target.constData());
    });
    mysql_close(session);
    return rate;
}

const TBenchRegistrar Rows([] {
    return std::vector<TBenchRow>{
        {.What = "escaping a clean text of 1,000 characters, no allocation",
         .PeerName = "memcpy of it",
         .Unit = "1/s",
         .Goal = bgAtLeast,
         .Limit = 0.2,
         .Product = [] { return EscapeRate(Clean(), true); },
         .Peer = CopyRate},
        {.What = "escaping a text with one escape in 20 characters",
         .PeerName = "mysql_real_escape_string",
         .Unit = "1/s",
         .Goal = bgAtLeast,
         .Limit = 1,
         .Product = [] { return EscapeRate(Dirty(), false); },
         .Peer = LibraryRate},
    };
});

} // namespace
