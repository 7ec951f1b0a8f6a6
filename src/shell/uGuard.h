#pragma once

#include <functional>

class QWidget;

/// What every action and slot runs through: nothing thrown leaves an event handler; it is shown in
/// the shell's error box and handed to the reporter.
class TGuard
{
public:
    using TReporter = std::function<void(const std::exception &e)>;

    /// Gives false when the action threw.
    static bool Run(const std::function<void()> &action);
    /// Shows and reports an exception that was caught elsewhere.
    static void Handle(const std::exception &e);
    /// Called with every exception that is shown; unset means nobody listens.
    static void SetReporter(TReporter reporter);
};
