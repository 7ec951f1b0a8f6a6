#include "shell/uAppManagerUtils.h"

#include "model/uDbmManager.h"
#include "shell/uAppDialogs.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppMessages.h"

TAppManagerUtils::TAppManagerUtils(TDbmManager *manager, TAppManagerPageUtils *pageUtils)
    : FManager(manager), FPageUtils(pageUtils)
{}

void TAppManagerUtils::SelectCharset()
{
    QString name;
    if (!TAppDialogs::SelectCharset(*FManager, name))
        return;
    FManager->SetCharset(name);
    TAppMessages::SendRedrawUI();
}

void TAppManagerUtils::SelectSchema(const QString &databaseName)
{
    TAppMessages::SendSelectSchema(FManager, databaseName);
}

void TAppManagerUtils::NewQuery()
{
    FPageUtils->ShowQueryFromText({}, {}, 0, true);
}

void TAppManagerUtils::OpenQuery()
{
    QString fileName;
    if (TAppDialogs::OpenSqlFile(fileName))
        FPageUtils->ShowQueryFromFile(fileName, {}, 0, true);
}
