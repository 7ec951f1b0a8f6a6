#pragma once

#include <QString>
#include <QStringList>

class QDate;
class QWidget;

/// Small windows under a control in which a value is chosen. Each gives false when it was closed
/// without a choice, and leaves the value alone then.
class TValuePopups
{
public:
    static bool ChooseDate(QWidget *anchor, QDate &date);
    static bool ChooseOne(QWidget *anchor, const QStringList &members, QString &value);
    /// `value` is a SET's text: members with commas between. What is no member goes with a choice.
    static bool ChooseSeveral(QWidget *anchor, const QStringList &members, QString &value);

    /// The day that a text of the server's form begins with; not valid for a zero date.
    static QDate DayOf(const QString &text);
    /// The text with another day; what stands behind the day stays as it is, fractions too. A text
    /// without a day becomes the day, at midnight when `withTime`.
    static QString WithDay(const QString &text, const QDate &day, bool withTime);
};
