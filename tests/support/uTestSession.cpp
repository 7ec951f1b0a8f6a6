#include "uTestSession.h"

#include "uTestServer.h"

#include <mysql.h>

#include <stdexcept>

namespace {

QString ToText(const QByteArray &bytes)
{
    return bytes.isNull() ? QString() : QString::fromUtf8(bytes);
}

} // namespace

TTestSession::TTestSession(const TTestServer &server, const QString &database)
    : TTestSession(server.Host(), server.Port(), database)
{}

TTestSession::TTestSession(const QString &host, int port, const QString &database)
    : FHandle(mysql_init(nullptr))
{
    mysql_options(FHandle, MYSQL_SET_CHARSET_NAME, "utf8mb4");
    // The greeting alone gives a collation that is not the server's own for the set.
    mysql_options(FHandle, MYSQL_INIT_COMMAND, "SET NAMES utf8mb4");
    if (mysql_real_connect(FHandle, host.toUtf8().constData(), "root", "",
                           database.isEmpty() ? nullptr : database.toUtf8().constData(),
                           unsigned(port), nullptr, CLIENT_MULTI_STATEMENTS))
        return;
    const std::string message = mysql_error(FHandle);
    mysql_close(FHandle); // no destructor runs after this
    throw std::runtime_error("Test session: " + message);
}

TTestSession::~TTestSession()
{
    mysql_close(FHandle);
}

void TTestSession::Fail(const QString &sql) const
{
    throw std::runtime_error(std::string(mysql_error(FHandle)) + " in: " + sql.toStdString());
}

QList<QList<QByteArray>> TTestSession::Fetch(const QString &sql)
{
    const QByteArray text = sql.toUtf8();
    if (mysql_real_query(FHandle, text.constData(), static_cast<unsigned long>(text.size())))
        Fail(sql);
    QList<QList<QByteArray>> rows;
    bool first = true;
    for (int next = 0; next == 0;) {
        if (MYSQL_RES *result = mysql_store_result(FHandle)) {
            while (MYSQL_ROW row = first ? mysql_fetch_row(result) : nullptr) {
                const unsigned long *lengths = mysql_fetch_lengths(result);
                QList<QByteArray> fields;
                for (unsigned i = 0; i < mysql_num_fields(result); ++i)
                    fields << (row[i] ? QByteArray(row[i], int(lengths[i])) : QByteArray());
                rows << fields;
            }
            first = false;
            mysql_free_result(result);
        } else if (mysql_errno(FHandle)) {
            Fail(sql);
        }
        next = mysql_next_result(FHandle);
        if (next > 0)
            Fail(sql);
    }
    return rows;
}

void TTestSession::Exec(const QString &sql)
{
    Fetch(sql);
}

QByteArray TTestSession::Bytes(const QString &sql)
{
    const QList<QList<QByteArray>> rows = Fetch(sql);
    return rows.isEmpty() ? QByteArray() : rows.first().value(0);
}

QString TTestSession::Value(const QString &sql)
{
    return ToText(Bytes(sql));
}

QList<QStringList> TTestSession::Rows(const QString &sql)
{
    QList<QStringList> texts;
    for (const QList<QByteArray> &row : Fetch(sql)) {
        QStringList fields;
        for (const QByteArray &field : row)
            fields << ToText(field);
        texts << fields;
    }
    return texts;
}

qulonglong TTestSession::Id() const
{
    return mysql_thread_id(FHandle);
}
