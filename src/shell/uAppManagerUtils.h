#pragma once

#include <QString>

class TAppManagerPageUtils;
class TDbmManager;

/// The user-level operations of a workspace: each runs a dialog, then tells the bus what changed.
class TAppManagerUtils
{
public:
    TAppManagerUtils(TDbmManager *manager, TAppManagerPageUtils *pageUtils); // not owned

    void SetParams(TDbmManager *manager) { FManager = manager; }

    void SelectCharset();
    void SelectSchema(const QString &databaseName);
    void NewQuery();
    void OpenQuery();

private:
    TDbmManager *FManager;
    TAppManagerPageUtils *FPageUtils;
};
