#pragma once

#include "uTestDatabase.h"

/// A fixture on each kind of server; its constructor takes the server.
template <typename TFixture>
class TOnBothServers : public TFixture, public testing::WithParamInterface<TTestServerKind>
{
public:
    static std::string Name(const testing::TestParamInfo<TTestServerKind> &info)
    {
        return info.param == skMySQL ? "MySQL9" : "MariaDB";
    }

protected:
    TOnBothServers() : TFixture(Chosen()) {}
    void SetUp() override
    {
        if (GetParam() == skMySQL)
            SKIP_WITHOUT_MYSQL9();
    }

private:
    // Where there is no MySQL 9, the fixture is made all the same before its test is skipped.
    static TTestServer &Chosen()
    {
        TTestServer *other = GetParam() == skMySQL ? TTestServer::MySql9() : nullptr;
        return other ? *other : TTestServer::Instance();
    }
};
