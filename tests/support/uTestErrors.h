#pragma once

#include "support/uException.h"

#include <functional>
#include <string>

/// The text of the system's exception with which an operation ends; empty when there is none.
inline std::string MessageOf(const std::function<void()> &operation)
{
    try {
        operation();
    } catch (const EException &error) {
        return error.Message().toStdString();
    }
    return {};
}
