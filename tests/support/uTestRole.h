#pragma once

#include <QStringList>

#include <functional>
#include <map>

/// What a test program does when a test starts it once more, with "--role NAME ARGUMENT...": for
/// tests that end a process the hard way.
class TTestRole
{
public:
    using TRun = std::function<int(const QStringList &arguments)>;

    TTestRole(const QString &name, TRun run) { Roles()[name] = std::move(run); }
    /// `arguments` are those of the program. False when they name no role.
    static bool TryRun(const QStringList &arguments, int &code)
    {
        if (arguments.value(1) != "--role")
            return false;
        const auto role = Roles().find(arguments.value(2));
        code = role == Roles().end() ? 2 : role->second(arguments.mid(3));
        return true;
    }

private:
    static std::map<QString, TRun> &Roles()
    {
        static std::map<QString, TRun> roles;
        return roles;
    }
};
