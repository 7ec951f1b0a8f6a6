#pragma once

#include "model/uDbmList.h"

class TDbmProcessUtils
{
public:
    static bool IsSleep(const QString &command)
    {
        return command.compare(u"sleep", Qt::CaseInsensitive) == 0;
    }
};

/// One thread of the server.
class TDbmProcessItem : public TDbmItem<TDbmProcessEntity>
{
public:
    explicit TDbmProcessItem(TDbmElement *owner) : TDbmItem(owner) {}

    bool IsSleep() { return TDbmProcessUtils::IsSleep(Entity().Command); }
    QString GetUserHostDisplayString();
    QString GetTimeDisplayString();
    QString GetInfoDisplayString(); // on one line
};

/// A thread keeps its item over a reload. Unlike with other lists a failing read raises.
class TDbmProcessList : public TDbmList<TDbmProcessItem, TDbmProcessEntity>
{
public:
    explicit TDbmProcessList(TDbmElement *owner) : TDbmList(owner) {}

protected:
    TItemPtr CreateItem() override { return New<TDbmProcessItem>(this); }
    QList<TDbmProcessEntity> SelectEntities() override;
    QString GetEntityKey(const TDbmProcessEntity &entity) const override;
};
