#include "core/uDbmServerFeatures.h"
#include "core/uDbmProvider.h"
#include "uTestServer.h"

#include <gtest/gtest.h>

namespace {

using TFeatures = TDbmServerFeatures;

struct TFlag
{
    const char *Name;
    bool TFeatures::*Field;
};

const TFlag Flags[] = {
    {"Events", &TFeatures::Events},
    {"Plugins", &TFeatures::Plugins},
    {"ISVariables", &TFeatures::ISVariables},
    {"ISStatus", &TFeatures::ISStatus},
    {"ISEvents", &TFeatures::ISEvents},
    {"ISEventsTimeZone", &TFeatures::ISEventsTimeZone},
    {"ISEventsBody", &TFeatures::ISEventsBody},
    {"ISEventsDefinition", &TFeatures::ISEventsDefinition},
    {"ISEventsOriginator", &TFeatures::ISEventsOriginator},
    {"ISEventsCharsetClient", &TFeatures::ISEventsCharsetClient},
    {"ISEventsCollationConnection", &TFeatures::ISEventsCollationConnection},
    {"ISEventsDatabaseCollation", &TFeatures::ISEventsDatabaseCollation},
    {"ISEventsStatusSlaveSideDisabled", &TFeatures::ISEventsStatusSlaveSideDisabled},
    {"CreateEventDefiner", &TFeatures::CreateEventDefiner},
    {"ISPlugins", &TFeatures::ISPlugins},
    {"ISPluginsLicense", &TFeatures::ISPluginsLicense},
    {"ISProcessList", &TFeatures::ISProcessList},
    {"ISEngines", &TFeatures::ISEngines},
    {"ISStatistics", &TFeatures::ISStatistics},
    {"ISRefConstraints", &TFeatures::ISRefConstraints},
    {"GlobalFKs", &TFeatures::GlobalFKs},
};

/// Flags that the second version has and the first has not, in the order of the table above.
QStringList Gained(const QString &before, const QString &after)
{
    TFeatures old;
    TFeatures now;
    if (!before.isEmpty())
        old.SetParams(before);
    now.SetParams(after);
    QStringList names;
    for (const TFlag &flag : Flags)
        if (now.*flag.Field && !(old.*flag.Field))
            names << flag.Name;
    return names;
}

struct TStepRow
{
    const char *Before;
    const char *After;
    const char *Gained;
};

const TStepRow Steps[] = {
    {"", "4.1.22", ""},
    {"4.1.22", "5.0.0-alpha", "ISStatistics"},
    {"5.0.0", "5.1.4", ""},
    {"5.1.4", "5.1.05", "Plugins ISPlugins"},
    {"5.1.05", "5.1.6", "Events ISEvents"},
    {"5.1.6", "5.1.07", "ISProcessList"},
    {"5.1.07", "5.1.10", "ISRefConstraints GlobalFKs"},
    {"5.1.11", "5.1.12-log",
     "ISVariables ISStatus ISEventsBody ISEventsDefinition ISPluginsLicense"},
    {"5.1.12", "5.1.17", "ISEventsTimeZone CreateEventDefiner"},
    {"5.1.17", "5.1.18", "ISEventsOriginator ISEventsStatusSlaveSideDisabled"},
    {"5.1.18", "5.1.21",
     "ISEventsCharsetClient ISEventsCollationConnection ISEventsDatabaseCollation"},
    {"5.1.21", "5.1.25", "ISEngines"},
    {"5.1.25", "5.5.30", ""},
    {"5.5.30", "10.0.5-MariaDB-1:10.0.5", ""},
    {"5.0.95", "9.7.4", // versions are numbers: 10 and 9 are above 5
     "Events Plugins ISVariables ISStatus ISEvents ISEventsTimeZone ISEventsBody "
     "ISEventsDefinition ISEventsOriginator ISEventsCharsetClient ISEventsCollationConnection "
     "ISEventsDatabaseCollation ISEventsStatusSlaveSideDisabled CreateEventDefiner ISPlugins "
     "ISPluginsLicense ISProcessList ISEngines ISRefConstraints GlobalFKs"},
    {"", "no version", ""},
};

TEST(TServerFeatures, GrowWithTheVersion)
{
    for (const TStepRow &row : Steps)
        EXPECT_EQ(Gained(row.Before, row.After).join(' ').toStdString(), row.Gained)
            << "from " << row.Before << " to " << row.After;
}

TEST(TServerFeatures, AreTakenAnewForEachServer)
{
    TFeatures features;
    features.SetParams("5.5.30");
    features.SetParams("5.0.95-log");
    EXPECT_FALSE(features.Events);
    EXPECT_TRUE(features.ISStatistics);
}

TEST(TServerFeatures, HoldPrivilegesFromTheFirstServerOn)
{
    TFeatures features;
    EXPECT_TRUE(features.UserPrivs.IsEmpty() && features.DatabasePrivs.IsEmpty() &&
                features.TablePrivs.IsEmpty() && features.RoutinePrivs.IsEmpty());

    features.SetParams("4.1.22");
    EXPECT_EQ(features.UserPrivs.Count(), 27);
    EXPECT_EQ(features.DatabasePrivs.Count(), 18);
    EXPECT_EQ(features.TablePrivs.Count(), 12);
    EXPECT_EQ(features.RoutinePrivs.Count(), 3);
    EXPECT_FALSE(features.UserPrivs.Contains(upReferences) ||
                 features.DatabasePrivs.Contains(dpReferences) ||
                 features.TablePrivs.Contains(tpReferences));
}

TEST(TServerFeatures, FollowTheVersionThatAServerTells)
{
    const std::unique_ptr<TTestServer> server = TTestServer::Start({"--version=5.0.95-log"});
    TDbmConnectionProfile profile;
    profile.HostName = server->Host();
    profile.Port = server->Port();
    profile.UserName = server->User();
    TDbmProvider provider;
    provider.SetParams(profile);

    EXPECT_EQ(provider.ServerVersion().toStdString(), "5.0.95-log");
    EXPECT_EQ(Gained("", provider.ServerVersion()), QStringList{"ISStatistics"});
}

} // namespace
