#pragma once

// The component's headers use Qt's short keywords, which this system is built without. They are to
// be included through this one.
#define signals Q_SIGNALS
#define slots Q_SLOTS
#include <Qsci/qscicommandset.h>
#include <Qsci/qsciscintilla.h>
#undef signals
#undef slots
