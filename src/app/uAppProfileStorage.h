#pragma once

#include "app/uAppProfiles.h"

class TConfig;

/// A profile as a group of a configuration file.
class TAppProfileStorage
{
public:
    static TAppProfilePtr Read(const TConfig &config, const QString &group);
    static void Write(TConfig &config, const QString &group, const TAppProfile &profile);
};
