#include "core/uDbmConnectionProfile.h"

#include <gtest/gtest.h>

namespace {

struct TDisplayRow
{
    TDbmConnectionProfile Profile;
    const char *Expected;
};

TDbmConnectionProfile Direct(int port, const QString &database)
{
    TDbmConnectionProfile profile;
    profile.HostName = "srv";
    profile.Port = port;
    profile.Database = database;
    return profile;
}

TDbmConnectionProfile Tunnelled(quint16 port)
{
    TDbmConnectionProfile profile = Direct(3307, "shop");
    profile.ConnectionType = ctSSHTunnel;
    profile.SSHSettings.HostName = "gate";
    profile.SSHSettings.Port = port;
    return profile;
}

const TDisplayRow DisplayRows[] = {
    {Direct(3306, "shop"), "srv/shop"},  {Direct(3307, "shop"), "srv:3307/shop"},
    {Direct(3306, ""), "srv"},           {Tunnelled(22), "ssh: gate"},
    {Tunnelled(2222), "ssh: gate:2222"},
};

TEST(TConnectionProfile, ShowsTheShortText)
{
    for (const TDisplayRow &row : DisplayRows)
        EXPECT_EQ(row.Profile.GetDisplayString().toStdString(), row.Expected);
}

} // namespace
