#include "uBenchRows.h"

#include "model/uDbmManager.h"
#include "uBench.h"

#include <cstdlib>
#include <cstring>
#include <mysql.h>
#include <stdexcept>

namespace {

// Numbers of three sizes, a decimal, a float, dates, short and long text, bytes and NULLs.
const char *const Table = R"(CREATE TABLE mixed ENGINE = Aria AS SELECT
    CAST(seq AS UNSIGNED) AS id,
    CAST(seq % 100 AS INT) AS small,
    CAST(seq * 12345678901 AS SIGNED) AS big,
    CAST(seq / 7 AS DECIMAL(20, 4)) AS amount,
    CAST(SQRT(seq) AS DOUBLE) AS root,
    CAST('2001-01-01' + INTERVAL seq MINUTE AS DATETIME) AS made,
    CONCAT('name ', seq) AS name,
    REPEAT('описание ', seq % 8) AS note,
    UNHEX(MD5(seq)) AS digest,
    IF(seq % 3, NULL, CAST(seq AS CHAR)) AS maybe
    FROM seq_1_to_1000000)";

void Execute(st_mysql *session, const char *sql)
{
    if (mysql_query(session, sql) != 0)
        throw std::runtime_error(mysql_error(session));
}

class TBuffer
{
public:
    ~TBuffer() { std::free(FData); }
    void Append(const char *bytes, size_t size)
    {
        if (FUsed + size > FSize) {
            FSize = FSize == 0 ? 1 << 20 : FSize * 2;
            FData = static_cast<char *>(std::realloc(FData, FSize));
        }
        std::memcpy(FData + FUsed, bytes, size);
        FUsed += size;
    }
    size_t Used() const { return FUsed; }

private:
    char *FData = nullptr;
    size_t FSize = 0, FUsed = 0;
};

} // namespace

st_mysql *TBenchRows::Connect(const char *database)
{
    st_mysql *session = mysql_init(nullptr);
    mysql_options(session, MYSQL_SET_CHARSET_NAME, "utf8mb4");
    if (!mysql_real_connect(session, "127.0.0.1", "root", "", database,
                            static_cast<uint>(TBench::ServerPort()), nullptr, 0))
        throw std::runtime_error(mysql_error(session));
    return session;
}

void TBenchRows::Prepare()
{
    st_mysql *session = Connect(nullptr);
    Execute(session, "CREATE DATABASE IF NOT EXISTS bench");
    mysql_select_db(session, "bench");
    if (mysql_query(session, "SELECT 1 FROM mixed LIMIT 1") != 0)
        Execute(session, Table);
    else
        mysql_free_result(mysql_store_result(session));
    mysql_close(session);
}

qint64 TBenchRows::BareLoop(st_mysql *session)
{
    TBuffer buffer;
    Execute(session, "SELECT * FROM mixed");
    MYSQL_RES *result = mysql_use_result(session);
    const uint columns = mysql_num_fields(result);
    while (const MYSQL_ROW row = mysql_fetch_row(result)) {
        const unsigned long *lengths = mysql_fetch_lengths(result);
        for (uint i = 0; i < columns; ++i) {
            if (row[i])
                buffer.Append(row[i], lengths[i]);
        }
    }
    mysql_free_result(result);
    return static_cast<qint64>(buffer.Used());
}

std::unique_ptr<TDbmManager> TBenchRows::ConnectManager()
{
    TDbmConnectionProfile profile;
    profile.HostName = "127.0.0.1";
    profile.Port = TBench::ServerPort();
    profile.UserName = "root";
    auto manager = TDbmManager::Create();
    manager->SetParams(profile);
    manager->Connect();
    return manager;
}
