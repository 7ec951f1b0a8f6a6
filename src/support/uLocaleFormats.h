#pragma once

#include <QLocale>

/// Formats from a language's data, without what no value of ours has.
struct TLocaleFormats
{
    static QString LongTime(const QLocale &locale);
};
