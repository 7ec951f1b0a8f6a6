#include "support/uLocaleFormats.h"

#include <QRegularExpression>

QString TLocaleFormats::LongTime(const QLocale &locale)
{
    // Neither a zone, in brackets or not, nor the part of the day that Qt has in its data and
    // cannot write.
    static const QRegularExpression unwritten("'[^']*'(*SKIP)(*FAIL)|[(\\[]?t+[)\\]]?|B");
    return locale.timeFormat(QLocale::LongFormat).remove(unwritten).simplified();
}
