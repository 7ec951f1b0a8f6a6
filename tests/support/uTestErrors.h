#pragma once

#include "support/uException.h"

#include <functional>

/// What an action raises, as the user would read it; a null string when it raises nothing.
inline QString RaisedText(const std::function<void()> &action)
{
    try {
        action();
    } catch (const EException &e) {
        return e.Message();
    }
    return {};
}
