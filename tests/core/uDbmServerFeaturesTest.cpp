#include "core/uDbmServerFeatures.h"
#include "core/uDbmProvider.h"
#include "uServerProfile.h"

namespace {

using TFeatures = TDbmServerFeatures;

struct TGateRow
{
    const char *Last;  // the last version without it
    const char *First; // the first with it
    std::vector<bool TFeatures::*> Flags;
};

const TGateRow Gates[] = {
    {"4.1.22", "5.0.0-alpha", {&TFeatures::ISStatistics}},
    {"5.1.05", "5.1.6", {&TFeatures::Events, &TFeatures::ISEvents}},
    {"5.1.11-log",
     "5.1.12-log",
     {&TFeatures::ISVariables, &TFeatures::ISStatus, &TFeatures::ISEventsBody,
      &TFeatures::ISEventsDefinition, &TFeatures::ISPluginsLicense}},
    {"5.1.24", "5.1.25", {&TFeatures::ISEngines}},
};

bool Has(const char *version, bool TFeatures::*flag)
{
    TFeatures features;
    features.SetParams(version);
    return features.*flag;
}

TEST(TServerFeatures, BeginWithTheirVersion)
{
    for (const TGateRow &row : Gates) {
        for (const auto flag : row.Flags) {
            EXPECT_FALSE(TFeatures().*flag);
            EXPECT_FALSE(Has("no version", flag));
            EXPECT_FALSE(Has(row.Last, flag)) << row.Last;
            EXPECT_TRUE(Has(row.First, flag)) << row.First;
            for (const char *newer : {"5.5.30", "9.7.4", "10.0.5-MariaDB-1:10.0.5"})
                EXPECT_TRUE(Has(newer, flag)) << newer;
            EXPECT_EQ(Has("5.0.95-log", flag), flag == &TFeatures::ISStatistics);
        }
    }
}

TEST(TServerFeatures, FollowTheVersionThatAServerTells)
{
    const std::unique_ptr<TTestServer> server = TTestServer::Start({"--version=5.0.95-log"});
    TDbmProvider provider;
    provider.SetParams(ServerProfile(*server)); // whose character set is none that it knew

    EXPECT_EQ(provider.ServerVersion().toStdString(), "5.0.95-log");
    TFeatures features;
    features.SetParams("5.5.30");
    features.SetParams(provider.ServerVersion());
    EXPECT_FALSE(features.Events);
    EXPECT_TRUE(features.ISStatistics);
}

} // namespace
