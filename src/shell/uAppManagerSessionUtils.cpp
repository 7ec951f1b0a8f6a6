#include "shell/uAppManagerSessionUtils.h"

#include "app/uAppSession.h"
#include "pages/query/uQueryPageFrame.h"
#include "pages/schema/uSchemaPageFrame.h"
#include "pages/structure/uTablePageFrame.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uGuard.h"
#include "shell/uPageManagerFrame.h"

#include <QFileInfo>

namespace {

const QString Pages = QStringLiteral("pages");

QString PagePath(int index)
{
    return Pages + ".page_" + QString::number(index);
}

} // namespace

TAppManagerSessionUtils::TAppManagerSessionUtils(TAppSession *session,
                                                 TPageManagerFrame *pageManager,
                                                 TAppManagerPageUtils *pageUtils)
    : FSession(session), FPageManagerFrame(pageManager), FPageUtils(pageUtils)
{}

void TAppManagerSessionUtils::Read()
{
    const auto position = FPageManagerFrame->NewPagePosition();
    FPageManagerFrame->SetNewPagePosition(nppLast);
    FPageManagerFrame->CloseAllPages();
    bool anyActive = false;
    const int count = FSession->Config().GetChildCount(Pages);
    FPageManagerFrame->AddPages([&] {
        for (int i = 0; i < count; ++i)
            // One page that fails to open must not take the others with it.
            TGuard::Run([&] { anyActive = ReadPage(PagePath(i)) || anyActive; });
    });
    if (!anyActive && FPageManagerFrame->PageCount() > 0)
        TGuard::Run([&] { FPageManagerFrame->SetActivePageIndex(0); });
    FPageManagerFrame->SetNewPagePosition(position);
}

bool TAppManagerSessionUtils::ReadPage(const QString &path)
{
    const QString word = FSession->Config().GetValue(path, "id", QString());
    const bool active = FSession->Config().GetValue(path, "active", false);
    const int before = FPageManagerFrame->PageCount();
    if (word == "query")
        ReadQuery(path, active);
    else if (word == "table")
        ReadTable(path, active);
    else if (word == "schema")
        FPageUtils->ShowSchema(FSession->Config().GetValue(path, "database", QString()), active);
    return active && FPageManagerFrame->PageCount() > before; // its file may be gone
}

void TAppManagerSessionUtils::ReadQuery(const QString &path, bool active)
{
    const TConfig &config = FSession->Config();
    const QString fileName = config.GetValue(path, "filename", QString(), true);
    const QString text = config.GetValue(path, "text", QString(), true);
    const QString database = config.GetValue(path, "used_database_name", QString(), true);
    const int height = config.GetValue(path, "result_height", 0);
    if (fileName.isEmpty()) {
        FPageUtils->ShowQueryFromText(text, database, height, active);
        return;
    }
    QDomElement node;
    config.GetNode(path, "unsaved_text", node);
    const QString unsaved = config.GetValue(path, "unsaved_text", QString(), true);
    if (node.isNull())
        FPageUtils->ShowQueryFromFile(fileName, database, height, active);
    else if (!QFileInfo(fileName).isFile())
        FPageUtils->ShowQueryFromText(unsaved, database, height, active);
    else
        FPageUtils->RestoreUnsavedText(fileName, unsaved.isNull() ? QString("") : unsaved,
                                       config.GetValue(path, "file_stamp", QString()), database,
                                       height, active);
}

void TAppManagerSessionUtils::Write()
{
    TakePages().ApplyTo(FSession->Config());
}

TConfigChanges TAppManagerSessionUtils::TakePages()
{
    TConfigChanges changes;
    changes.ClearNode(Pages);
    int count = 0;
    for (int i = 0; i < FPageManagerFrame->PageCount(); ++i)
        if (WritePage(changes, FPageManagerFrame->GetPageByIndex(i), PagePath(count)))
            ++count;
    return changes;
}

bool TAppManagerSessionUtils::WritePage(TConfigChanges &changes, TPageFrame *page,
                                        const QString &path)
{
    if (const auto *query = qobject_cast<TQueryPageFrame *>(page))
        WriteQuery(changes, *query, path);
    else if (const auto *table = qobject_cast<TTablePageFrame *>(page))
        WriteTable(changes, *table, path);
    else if (const auto *schema = qobject_cast<TSchemaPageFrame *>(page))
        WriteSchema(changes, *schema, path);
    else
        return false;
    return true;
}

void TAppManagerSessionUtils::WriteHead(TConfigChanges &changes, const TPageFrame &page,
                                        const QString &path, const QString &word)
{
    changes.SetValue(path, "id", word);
    changes.SetValue(path, "active", FPageManagerFrame->ActivePage() == &page);
}

void TAppManagerSessionUtils::WriteQuery(TConfigChanges &changes, const TQueryPageFrame &query,
                                         const QString &path)
{
    WriteHead(changes, query, path, "query");
    if (query.GetFileName().isEmpty())
        changes.SetValue(path, "text", query.GetText(), true);
    else
        changes.SetValue(path, "filename", query.GetFileName(), true);
    if (query.IsUnsaved() && !query.GetFileName().isEmpty()) {
        changes.SetValue(path, "unsaved_text", query.GetText(), true);
        changes.SetValue(path, "file_stamp", query.GetFileStamp());
    }
    changes.SetValue(path, "used_database_name", query.GetUsedDatabaseName(), true);
    changes.SetValue(path, "result_height", query.GetResultHeight());
}

void TAppManagerSessionUtils::WriteTable(TConfigChanges &changes, const TTablePageFrame &table,
                                         const QString &path)
{
    const QString database = table.GetDatabaseName();
    const QString name = table.GetTableOrViewName();
    WriteHead(changes, table, path, "table");
    changes.SetValue(path, "database", database);
    changes.SetValue(path, "table", name);
    TAppSession::WriteTableDataFrame(changes, path, table.GetDataSessionData());
    // A page that nobody looked at tells nothing new.
    if (table.IsLoaded())
        FSession->CreateTablePageSession(database, name)->WriteDataShow(table.IsDataShown());
}

void TAppManagerSessionUtils::WriteSchema(TConfigChanges &changes, const TSchemaPageFrame &schema,
                                          const QString &path)
{
    WriteHead(changes, schema, path, "schema");
    changes.SetValue(path, "database", schema.GetDatabaseName());
}

void TAppManagerSessionUtils::ReadTable(const QString &path, bool active)
{
    TTableDataSessionData data;
    FSession->ReadTableDataFrame(path, data);
    FPageUtils->ShowTable(FSession->Config().GetValue(path, "database", QString()),
                          FSession->Config().GetValue(path, "table", QString()), data, active);
}
