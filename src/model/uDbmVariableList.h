#pragma once

#include "model/uDbmList.h"

/// The text that explains a variable's value.
class TDbmVariableCommentFormatter
{
public:
    /// A duration, a size, or empty for a variable or a value that needs none.
    static QString Format(const QString &name, const QString &value);
};

/// One variable of the server.
class TDbmVariableItem : public TDbmItem<TDbmVariableEntity>
{
public:
    explicit TDbmVariableItem(TDbmElement *owner) : TDbmItem(owner) {}

    QString GetComment();
};

class TDbmVariableList
    : public TDbmNamedList<TDbmVariableItem, TDbmVariableEntity, &TDbmVariableEntity::Name>
{
public:
    TDbmVariableList(TDbmElement *owner, TDbmVariableOption option)
        : TDbmNamedList(owner), FOption(option)
    {}

    TDbmVariableOption Option() const { return FOption; }

protected:
    QList<TDbmVariableEntity> SelectEntities() override;

private:
    const TDbmVariableOption FOption;
};
