#include "model/uDbmComparers.h"

namespace {

template <typename T>
TDbmComparer<T> ByName(QString T::*name)
{
    return [name](const T &left, const T &right) {
        return QString::compare(left.*name, right.*name, Qt::CaseSensitive);
    };
}

template <typename T>
TDbmComparer<T> ByPosition()
{
    return [](const T &left, const T &right) { return left.Position - right.Position; };
}

} // namespace

TDbmComparer<TDbmDatabaseEntity> TDbmComparers::CreateDatabaseEntityComparer()
{
    return ByName(&TDbmDatabaseEntity::DatabaseName);
}

TDbmComparer<TDbmTableEntity> TDbmComparers::CreateTableEntityComparer()
{
    return ByName(&TDbmTableEntity::TableName);
}

TDbmComparer<TDbmViewEntity> TDbmComparers::CreateViewEntityComparer()
{
    return ByName(&TDbmViewEntity::ViewName);
}

TDbmComparer<TDbmFieldEntity> TDbmComparers::CreateFieldEntityComparer()
{
    return [](const TDbmFieldEntity &left, const TDbmFieldEntity &right) {
        return left.Info.PosIndex - right.Info.PosIndex;
    };
}

TDbmComparer<TDbmIndexColumnEntity> TDbmComparers::CreateIndexColumnEntityComparer()
{
    return ByPosition<TDbmIndexColumnEntity>();
}

TDbmComparer<TDbmReferenceColumnEntity> TDbmComparers::CreateReferenceColumnEntityComparer()
{
    return ByPosition<TDbmReferenceColumnEntity>();
}
