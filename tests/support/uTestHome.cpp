#include "uTestHome.h"

#include <QByteArray>

TTestHome::TTestHome()
{
    // The caches of the machine stay: they hold the fonts' index and the template of the servers.
    if (qEnvironmentVariableIsEmpty("XDG_CACHE_HOME"))
        qputenv("XDG_CACHE_HOME", qgetenv("HOME") + "/.cache");
    qputenv("HOME", FFolder.path().toUtf8());
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR"))
        qputenv("XDG_RUNTIME_DIR", FFolder.path().toUtf8());
    qputenv("LC_ALL", "C.UTF-8"); // texts and code page are the same on every machine
    for (const char *name :
         {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_DOCUMENTS_DIR"})
        qunsetenv(name);
}
