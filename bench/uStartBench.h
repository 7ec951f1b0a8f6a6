#pragma once

#include <QStringList>

/// A program start as a process of its own: "product" is the workbench up to a connected workspace,
/// "bare" a window of Qt's that connects. Prints "ready" when it has painted and its resident
/// memory in MiB when it has nothing left to do.
class TBenchStart
{
public:
    /// Whether the arguments ask for such a process; its exit code comes then.
    static bool IsChild(const QStringList &arguments, int &exitCode);
};
