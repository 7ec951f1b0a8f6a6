#pragma once

#include "support/uDateTime.h"

#include <QString>

/// Names of the system that the program runs on, as they are shown to people.
class TOsUtils
{
public:
    static QString GetOsVersion();
    static QString GetOsLanguage();
    static QString GetTimeZone();
};

/// What is counted between runs: properties of the configuration file.
class TAppRegistry
{
public:
    static int ReadAppExecuteCounter();
    static void WriteAppExecuteCounter(int value);
    /// The first start. Absent before the first report.
    static TDateTime ReadAppFirstExecuted();
    static void WriteAppFirstExecuted(TDateTime value);
    /// The host of checks and reports, such as host.example or host.example:8080. Empty unless
    /// somebody has set it in the configuration file: then nothing is sent or asked.
    static QString ReadWebHost();
};

/// How often the workbench was started.
class TAppExecuteCounter
{
public:
    static int Read() { return TAppRegistry::ReadAppExecuteCounter(); }
    static void Increment();
};

/// Reports to the maker's host, each from a thread of its own; a failure is nobody's business.
/// Nothing is sent without a host. Main thread only.
class TAppWebUtils
{
public:
    static void PostUserStatistics(const QString &appVersion, int screenWidth, int screenHeight);
    static void PostSessionStatistics(const QString &serverVersion, bool isTunnelling);
    static void PostExceptionLog(const QString &appVersion, const QString &serverVersion,
                                 bool isTunnelling, const QString &message,
                                 const QString &callStack);
    static void PostNotExecutedCommandLog(const QString &appVersion, const QString &serverVersion,
                                          bool isTunnelling, const QString &message,
                                          const QString &command);
    /// Address of a path on the host; empty without a host.
    static QString Address(const QString &path);
};
