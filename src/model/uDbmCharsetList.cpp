#include "model/uDbmCharsetList.h"

#include "sql/uDbmCommands.h"

QList<TDbmCharsetEntity> TDbmCharsetList::SelectEntities()
{
    return FCommands->Charsets().ExecuteSelect();
}

QList<TDbmCollationEntity> TDbmCollationList::SelectEntities()
{
    return FCommands->Collations().ExecuteSelect();
}
