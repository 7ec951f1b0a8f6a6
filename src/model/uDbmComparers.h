#pragma once

#include "model/uDbmEntities.h"

#include <functional>

/// A sort order: below, at or above 0 as the left side comes before, with or behind the right.
template <typename T>
using TDbmComparer = std::function<int(const T &left, const T &right)>;

/// The sort orders of entities. Names compare by code unit, so upper case comes before lower case.
class TDbmComparers
{
public:
    static TDbmComparer<TDbmDatabaseEntity> CreateDatabaseEntityComparer();
    static TDbmComparer<TDbmTableEntity> CreateTableEntityComparer();
    static TDbmComparer<TDbmViewEntity> CreateViewEntityComparer();
    static TDbmComparer<TDbmFieldEntity> CreateFieldEntityComparer();
    static TDbmComparer<TDbmIndexColumnEntity> CreateIndexColumnEntityComparer();
    static TDbmComparer<TDbmReferenceColumnEntity> CreateReferenceColumnEntityComparer();
    /// Every pair is equal: the order in which the server answered stays.
    template <typename T>
    static TDbmComparer<T> CreateNullComparer()
    {
        return [](const T &, const T &) { return 0; };
    }
};
