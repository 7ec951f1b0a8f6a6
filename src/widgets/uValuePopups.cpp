#include "widgets/uValuePopups.h"

#include <QCalendarWidget>
#include <QDate>
#include <QKeyEvent>
#include <QListWidget>
#include <QMenu>
#include <QRegularExpression>
#include <QWidgetAction>
#include <algorithm>

namespace {

constexpr int ShownMembers = 12;

// Whether the key that closes a popup gave the choice up.
class TMemberList : public QListWidget
{
public:
    using QListWidget::QListWidget;
    bool IsCancelled() const { return FIsCancelled; }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        FIsCancelled = event->key() == Qt::Key_Escape;
        if (event->key() == Qt::Key_Space && currentItem())
            Q_EMIT itemClicked(currentItem());
        else
            QListWidget::keyPressEvent(event);
    }

private:
    bool FIsCancelled = false;
};

void Run(QMenu &menu, QWidget &content, QWidget &anchor)
{
    auto *action = new QWidgetAction(&menu);
    action->setDefaultWidget(&content);
    menu.addAction(action);
    QObject::connect(
        &menu, &QMenu::aboutToShow, &content, [&content] { content.setFocus(); },
        Qt::QueuedConnection);
    menu.exec(anchor.mapToGlobal(QPoint(0, anchor.height())));
}

TMemberList *MakeList(QMenu &menu, const QWidget &anchor, const QStringList &members)
{
    auto *list = new TMemberList(&menu);
    list->setObjectName("lstMembers");
    list->setAccessibleName(anchor.accessibleName());
    list->setFrameShape(QFrame::NoFrame);
    list->addItems(members);
    const int rows = std::clamp(int(members.size()), 1, ShownMembers);
    const int width = list->sizeHintForColumn(0) + list->fontMetrics().height() * 2;
    list->setFixedHeight(list->sizeHintForRow(0) * rows + 2 * list->frameWidth() + 2);
    list->setMinimumWidth(std::max(width, anchor.width()));
    QObject::connect(list, &QListWidget::itemActivated, &menu, &QMenu::close);
    return list;
}

} // namespace

bool TValuePopups::ChooseDate(QWidget *anchor, QDate &date)
{
    QMenu menu(anchor);
    menu.setObjectName("pmCalendar");
    auto *calendar = new QCalendarWidget(&menu);
    calendar->setObjectName("calDate");
    calendar->setSelectedDate(date.isValid() ? date : QDate::currentDate());
    QDate chosen;
    QObject::connect(calendar, &QCalendarWidget::activated, &menu, [&](const QDate &day) {
        chosen = day;
        menu.close();
    });
    QObject::connect(calendar, &QCalendarWidget::clicked, calendar, &QCalendarWidget::activated);
    Run(menu, *calendar, *anchor);
    if (chosen.isValid())
        date = chosen;
    return chosen.isValid();
}

bool TValuePopups::ChooseOne(QWidget *anchor, const QStringList &members, QString &value)
{
    QMenu menu(anchor);
    menu.setObjectName("pmMembers");
    TMemberList *list = MakeList(menu, *anchor, members);
    list->setCurrentRow(int(std::max<qsizetype>(0, members.indexOf(value))));
    const QListWidgetItem *chosen = nullptr;
    const auto choose = [&](const QListWidgetItem *item) {
        chosen = item;
        menu.close();
    };
    QObject::connect(list, &QListWidget::itemActivated, &menu, choose);
    QObject::connect(list, &QListWidget::itemClicked, &menu, choose);
    Run(menu, *list, *anchor);
    if (chosen)
        value = chosen->text();
    return chosen != nullptr;
}

bool TValuePopups::ChooseSeveral(QWidget *anchor, const QStringList &members, QString &value)
{
    QMenu menu(anchor);
    menu.setObjectName("pmMembers");
    TMemberList *list = MakeList(menu, *anchor, members);
    const QStringList before = value.split(u',');
    for (int row = 0; row < list->count(); ++row) {
        // The whole line takes the click, not the mark alone.
        list->item(row)->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        list->item(row)->setCheckState(before.contains(members[row]) ? Qt::Checked : Qt::Unchecked);
    }
    list->setCurrentRow(0);
    bool isChanged = false;
    QObject::connect(list, &QListWidget::itemClicked, &menu, [&](QListWidgetItem *item) {
        isChanged = true;
        item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    });
    Run(menu, *list, *anchor);
    if (!isChanged || list->IsCancelled())
        return false;
    QStringList chosen;
    for (int row = 0; row < list->count(); ++row)
        if (list->item(row)->checkState() == Qt::Checked)
            chosen += members[row];
    value = chosen.join(u',');
    return true;
}

QDate TValuePopups::DayOf(const QString &text)
{
    return QDate::fromString(text.trimmed().left(10), Qt::ISODate);
}

QString TValuePopups::WithDay(const QString &text, const QDate &day, bool withTime)
{
    static const QRegularExpression form(R"(^\s*\d+-\d+-\d+)");
    const qsizetype size = form.match(text).capturedLength();
    const QString rest = size > 0   ? text.mid(size)
                         : withTime ? QStringLiteral(" 00:00:00")
                                    : QString();
    return day.toString(Qt::ISODate) + rest;
}
