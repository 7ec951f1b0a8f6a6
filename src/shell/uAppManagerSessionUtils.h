#pragma once

#include "app/uConfigChanges.h"

class TAppManagerPageUtils;
class TAppSession;
class TPageFrame;
class TPageManagerFrame;
class TQueryPageFrame;
class TSchemaPageFrame;
class TTablePageFrame;

/// Writes the pages of one workspace into its session and opens them again. Refers to the
/// workspace's session, tab set and page operations, which outlive it.
class TAppManagerSessionUtils
{
public:
    TAppManagerSessionUtils(TAppSession *session, TPageManagerFrame *pageManager,
                            TAppManagerPageUtils *pageUtils); // not owned

    /// Closes all pages and opens those of the session, in their order. Only the active one loads.
    void Read();
    /// A page with a file is kept as its name, and as its text while that is not saved.
    void Write();
    /// What Write would write of the pages. What is kept of tables beside their pages is written.
    TConfigChanges TakePages();

private:
    bool ReadPage(const QString &path);
    bool WritePage(TConfigChanges &changes, TPageFrame *page, const QString &path);
    void WriteHead(TConfigChanges &changes, const TPageFrame &page, const QString &path,
                   const QString &word);
    void ReadQuery(const QString &path, bool active);
    void ReadTable(const QString &path, bool active);
    void WriteQuery(TConfigChanges &changes, const TQueryPageFrame &query, const QString &path);
    void WriteSchema(TConfigChanges &changes, const TSchemaPageFrame &schema, const QString &path);
    void WriteTable(TConfigChanges &changes, const TTablePageFrame &table, const QString &path);

    TAppSession *FSession;
    TPageManagerFrame *FPageManagerFrame;
    TAppManagerPageUtils *FPageUtils;
};
