#pragma once

#include <QString>

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

private:
    bool ReadPage(const QString &path);
    bool WritePage(TPageFrame *page, const QString &path);
    void ReadQuery(const QString &path, bool active);
    void ReadTable(const QString &path, bool active);
    bool WriteQuery(const TQueryPageFrame &query, const QString &path);
    bool WriteSchema(const TSchemaPageFrame &schema, const QString &path);
    bool WriteTable(const TTablePageFrame &table, const QString &path);

    TAppSession *FSession;
    TPageManagerFrame *FPageManagerFrame;
    TAppManagerPageUtils *FPageUtils;
};
