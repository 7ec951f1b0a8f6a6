#pragma once

#include "core/uDbmConnectionProfile.h"
#include "uTestDatabase.h"

/// The profile of a direct connection to a test's server; with a proxy's port, through the proxy.
inline TDbmConnectionProfile ServerProfile(const TTestServer &server, int port = 0)
{
    TDbmConnectionProfile profile;
    profile.HostName = server.Host();
    profile.Port = port != 0 ? port : server.Port();
    profile.UserName = server.User();
    profile.Password = server.Password();
    profile.Charset = "utf8mb4";
    return profile;
}
