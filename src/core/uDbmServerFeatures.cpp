#include "core/uDbmServerFeatures.h"

#include "support/uRegExUtils.h"

namespace {

/// One comparable number of a version text; what stands behind the three numbers is of no account.
int VersionNumber(const QString &version)
{
    const auto match = TRegExUtils::Match(version, QStringLiteral("(\\d+).(\\d+).(\\d*)"));
    return match.captured(1).toInt() * 10000 + match.captured(2).toInt() * 100 +
           match.captured(3).toInt();
}

struct TFlag
{
    bool TDbmServerFeatures::*Field;
    int Since;
};

using TFeatures = TDbmServerFeatures;

/// The versions in which the server got what the flag tells of.
constexpr TFlag Flags[] = {
    {&TFeatures::ISStatistics, 50000},
    {&TFeatures::Plugins, 50105},
    {&TFeatures::ISPlugins, 50105},
    {&TFeatures::Events, 50106},
    {&TFeatures::ISEvents, 50106},
    {&TFeatures::ISProcessList, 50107},
    {&TFeatures::ISRefConstraints, 50110},
    {&TFeatures::GlobalFKs, 50110},
    {&TFeatures::ISVariables, 50112},
    {&TFeatures::ISStatus, 50112},
    {&TFeatures::ISEventsBody, 50112},
    {&TFeatures::ISEventsDefinition, 50112},
    {&TFeatures::ISPluginsLicense, 50112},
    {&TFeatures::ISEventsTimeZone, 50117},
    {&TFeatures::CreateEventDefiner, 50117},
    {&TFeatures::ISEventsOriginator, 50118},
    {&TFeatures::ISEventsStatusSlaveSideDisabled, 50118},
    {&TFeatures::ISEventsCharsetClient, 50121},
    {&TFeatures::ISEventsCollationConnection, 50121},
    {&TFeatures::ISEventsDatabaseCollation, 50121},
    {&TFeatures::ISEngines, 50125},
};

} // namespace

void TDbmServerFeatures::SetParams(const QString &serverVersion)
{
    FServerVersion = serverVersion;
    const int version = VersionNumber(serverVersion);
    for (const TFlag &flag : Flags)
        this->*flag.Field = version >= flag.Since;

    // REFERENCES is left out: servers stored it for many versions without ever looking at it.
    UserPrivs = TDbmUserPrivs::UpTo(upTrigger) - TDbmUserPrivs{upReferences};
    DatabasePrivs = TDbmDatabasePrivs::UpTo(dpTrigger) - TDbmDatabasePrivs{dpReferences};
    TablePrivs = TDbmTablePrivs::UpTo(tpTrigger) - TDbmTablePrivs{tpReferences};
    RoutinePrivs = TDbmRoutinePrivs::UpTo(rpGrant);

    const bool isMariaDB = serverVersion.contains(u"mariadb", Qt::CaseInsensitive);
    PSVariables = !isMariaDB && version >= 80000;
    QuotedDefaults = isMariaDB && version >= 100207;
    MarkedDefaults = PSVariables;
    ColumnChecks = isMariaDB && version >= 100201;
    CachedStatistics = PSVariables;
    ConstraintNames = PSVariables;
    SourceWords = !isMariaDB && version >= 80400;
    AlterUser = PSVariables;
    Roles = isMariaDB && version >= 100005;
}
