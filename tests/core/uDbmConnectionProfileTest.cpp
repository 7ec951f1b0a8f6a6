#include "core/uDbmConnectionProfile.h"

#include <gtest/gtest.h>

namespace {

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

TEST(TConnectionProfile, ShowsTheShortText)
{
    EXPECT_EQ(Direct(3306, "shop").GetDisplayString().toStdString(), "srv/shop");
    EXPECT_EQ(Direct(3307, "shop").GetDisplayString().toStdString(), "srv:3307/shop");
    EXPECT_EQ(Direct(3306, "").GetDisplayString().toStdString(), "srv");
    EXPECT_EQ(Tunnelled(22).GetDisplayString().toStdString(), "ssh: gate");
    EXPECT_EQ(Tunnelled(2222).GetDisplayString().toStdString(), "ssh: gate:2222");
}

} // namespace
