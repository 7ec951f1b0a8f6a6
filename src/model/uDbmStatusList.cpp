#include "model/uDbmStatusList.h"

#include "sql/uDbmCommands.h"
#include "support/uFormat.h"

#include <QSet>

namespace {

const QString QueryCounterStart = QStringLiteral("com_");

const QSet<QString> &Uptimes()
{
    static const QSet<QString> names = {"uptime", "uptime_since_flush_status"};
    return names;
}

const QSet<QString> &Sizes()
{
    static const QSet<QString> names = {"bytes_received",        "bytes_sent",
                                        "innodb_data_read",      "innodb_data_written",
                                        "innodb_os_log_written", "innodb_page_size"};
    return names;
}

} // namespace

bool TDbmStatusUtils::IsCounter(const QString &name)
{
    return !Uptimes().contains(name);
}

bool TDbmStatusUtils::IsSizeCounter(const QString &name)
{
    return IsCounter(name) && Sizes().contains(name);
}

bool TDbmStatusUtils::IsOrdinalCounter(const QString &name)
{
    return IsCounter(name) && !Sizes().contains(name);
}

bool TDbmStatusUtils::IsTime(const QString &name)
{
    return Uptimes().contains(name);
}

QString TDbmStatusUtils::FormatComment(const QString &name, const QString &value)
{
    bool isWhole = false;
    const qint64 number = value.toLongLong(&isWhole);
    const double counter =
        isWhole ? static_cast<double>(number) : static_cast<double>(value.toULongLong(&isWhole));
    if (!isWhole)
        return {};
    const QString key = name.toLower();
    if (IsOrdinalCounter(key))
        return TFormat::Format("%.0n", {counter});
    return IsSizeCounter(key) ? TFormat::SizeText(counter) : TFormat::DurationText(number);
}

QString TDbmStatusUtils::FormatCounterValue(const QString &name, const QString &value, int period,
                                            qint64 uptime)
{
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (uptime == 0 || !isNumber)
        return {};
    const double rate = number / static_cast<double>(uptime) * period;
    const QString key = name.toLower();
    if (IsOrdinalCounter(key))
        return TFormat::Format("%.0n", {rate});
    return IsSizeCounter(key) ? TFormat::SizeText(rate) : QString();
}

TDbmStatusList &TDbmStatusItem::List() const
{
    return OwnerAs<TDbmStatusList>();
}

bool TDbmStatusItem::IsQueryCounter()
{
    return Entity().Name.startsWith(QueryCounterStart);
}

QString TDbmStatusItem::FormatQueryCounterName()
{
    return IsQueryCounter() ? Entity().Name.mid(QueryCounterStart.size()) : Entity().Name;
}

qint64 TDbmStatusItem::GetCounterValue()
{
    return Entity().Value.toLongLong();
}

double TDbmStatusItem::Rate(int period)
{
    const qint64 uptime = List().GetUptime();
    return uptime == 0 ? 0 : Entity().Value.toDouble() / static_cast<double>(uptime) * period;
}

QString TDbmStatusItem::RateText(int period)
{
    return TDbmStatusUtils::FormatCounterValue(Entity().Name, Entity().Value, period,
                                               List().GetUptime());
}

QString TDbmStatusItem::GetComment()
{
    return TDbmStatusUtils::FormatComment(Entity().Name, Entity().Value);
}

qint64 TDbmStatusList::GetUptime()
{
    TItemPtr item;
    return TryGetByName("uptime_since_flush_status", item) || TryGetByName("uptime", item)
               ? item->GetCounterValue()
               : 0;
}

qint64 TDbmStatusList::CalcAllQueries()
{
    qint64 sum = 0;
    ForEach([&](TDbmStatusItem &item) {
        if (item.IsQueryCounter())
            sum += item.GetCounterValue();
    });
    return sum;
}

QList<TDbmStatusEntity> TDbmStatusList::SelectEntities()
{
    return FCommands->Status().ExecuteSelect(FOption);
}

QString TDbmStatusList::GetEntityKey(const TDbmStatusEntity &entity) const
{
    return entity.Name.toLower();
}
