#pragma once

#include "model/uDbmList.h"

/// What kind of number a status is, and how it shows. Names in lower case. Deliberate: every status
/// but the two uptimes counts as a counter, also one whose value is text.
class TDbmStatusUtils
{
public:
    static bool IsCounter(const QString &name);
    static bool IsSizeCounter(const QString &name);
    static bool IsOrdinalCounter(const QString &name);
    static bool IsTime(const QString &name);

    /// Empty for a value that is no whole number.
    static QString FormatComment(const QString &name, const QString &value);
    /// The value for each `period` seconds of `uptime`; empty when there is no uptime or number.
    static QString FormatCounterValue(const QString &name, const QString &value, int period,
                                      qint64 uptime);
};

class TDbmStatusList;

/// One status of the server.
class TDbmStatusItem : public TDbmItem<TDbmStatusEntity>
{
public:
    explicit TDbmStatusItem(TDbmElement *owner) : TDbmItem(owner) {}

    bool IsQueryCounter();
    QString FormatQueryCounterName();
    qint64 GetCounterValue();
    double GetCounterPerHourValue() { return Rate(3600); }
    double GetCounterPerMinuteValue() { return Rate(60); }
    double GetCounterPerSecondValue() { return Rate(1); }
    QString GetCounterPerHourValueDisplayString() { return RateText(3600); }
    QString GetCounterPerMinuteValueDisplayString() { return RateText(60); }
    QString GetCounterPerSecondValueDisplayString() { return RateText(1); }
    QString GetComment();

private:
    TDbmStatusList &List() const;
    double Rate(int period);
    QString RateText(int period);
};

class TDbmStatusList : public TDbmList<TDbmStatusItem, TDbmStatusEntity>
{
public:
    TDbmStatusList(TDbmElement *owner, TDbmStatusOption option) : TDbmList(owner), FOption(option)
    {}

    /// Blind to letter case: the keys are lower case.
    bool TryGetByName(const QString &name, TItemPtr &item)
    {
        return TDbmList::TryGetByName(name.toLower(), item);
    }
    /// Seconds since the counters were last set to 0; 0 when the server does not tell.
    qint64 GetUptime();
    qint64 CalcAllQueries();
    TDbmStatusOption Option() const { return FOption; }

protected:
    TItemPtr CreateItem() override { return New<TDbmStatusItem>(this); }
    QList<TDbmStatusEntity> SelectEntities() override;
    QString GetEntityKey(const TDbmStatusEntity &entity) const override;

private:
    const TDbmStatusOption FOption;
};
