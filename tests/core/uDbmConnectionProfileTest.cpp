#include "core/uDbmConnectionProfile.h"

#include <gtest/gtest.h>

namespace {

struct TDisplayRow
{
    const char *Name;
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
    {"DefaultPortIsLeftOut", Direct(3306, "shop"), "srv/shop"},
    {"OtherPortIsShown", Direct(3307, "shop"), "srv:3307/shop"},
    {"ServerConnectionHasNoDatabase", Direct(3306, ""), "srv"},
    {"TunnelHidesTheServer", Tunnelled(22), "ssh: gate"},
    {"TunnelShowsItsOwnPort", Tunnelled(2222), "ssh: gate:2222"},
};

class TProfileDisplay : public ::testing::TestWithParam<TDisplayRow>
{};

TEST_P(TProfileDisplay, ShowsTheShortText)
{
    EXPECT_EQ(GetParam().Profile.GetDisplayString().toStdString(), GetParam().Expected);
}

INSTANTIATE_TEST_SUITE_P(Rows, TProfileDisplay, ::testing::ValuesIn(DisplayRows),
                         [](const auto &info) { return std::string(info.param.Name); });

} // namespace
