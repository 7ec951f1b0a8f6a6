#include "core/uDbmCommandLog.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

TEST(TCommandLog, ItemsShowWhatTheyHold)
{
    TDbmCommandLog log(10, 0);
    const EDacMySqlError error(99999, "#42000wrong", "text");
    const TDbmCommandLogItem &good = log.Add("SELECT  1,\r\n  2", nullptr, 1.2345678);
    const TDbmCommandLogItem &bad = log.Add("x", &error, 0);

    EXPECT_EQ(good.Query().toStdString(), "SELECT  1,");
    EXPECT_EQ(good.GetStatusDisplayString().toStdString(), "OK");
    EXPECT_EQ(good.GetDurationMSDisplayString().toStdString(), "1,234.57");
    EXPECT_FALSE(good.IsError());

    EXPECT_EQ(bad.GetStatusDisplayString().toStdString(), "99999 ()");
    EXPECT_EQ(bad.ErrorMessage().toStdString(), "wrong");
    EXPECT_TRUE(bad.IsError());
}

TEST(TCommandLog, TimeHasSecondsInEveryLocale)
{
    TDbmCommandLog log(10, 0);
    const TDbmCommandLogItem &item = log.Add("x", nullptr, 0);
    const QTime time = item.Date().ToQDateTime().time();
    const QLocale old;
    for (const char *name : {"C", "en_US", "de_DE", "ru_RU", "fi_FI", "ja_JP", "zh_TW", "ar_EG"}) {
        QLocale::setDefault(QLocale(name));
        const QString seconds = QString("%1").arg(time.second(), 2, 10, QChar('0'));
        QString text = item.GetTimeDisplayString();
        for (QChar &c : text) // digits of the locale's own script
            if (c.isDigit())
                c = QChar('0' + c.digitValue());
        EXPECT_TRUE(text.contains(seconds)) << name << ": " << text.toStdString();
        EXPECT_EQ(text.split(QRegularExpression("\\D+"), Qt::SkipEmptyParts).size(), 3)
            << name << ": " << text.toStdString();
    }
    QLocale::setDefault(old);
}

} // namespace
