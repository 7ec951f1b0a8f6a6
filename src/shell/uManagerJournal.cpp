#include "shell/uManagerJournal.h"

#include "app/uAppSession.h"
#include "pages/query/uQueryPageFrame.h"
#include "pages/structure/uTablePageFrame.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uGuard.h"
#include "shell/uPageManagerFrame.h"

#include <utility>

namespace {

constexpr int Interval = 3000; // milliseconds; what a crash can take at most

QString StateOf(const TTableDataSessionData &data)
{
    return QStringLiteral(",%1,%2,%3,%4,%5,%6,%7,%8")
        .arg(data.EditMode)
        .arg(data.UseFilter)
        .arg(data.ShowTextColumns)
        .arg(data.RowCount)
        .arg(data.CurrentPage)
        .arg(data.SoftAscending)
        .arg(data.SortFieldName, data.WhereCommandText);
}

} // namespace

TManagerJournal::TManagerJournal(TAppSession *session, TPageManagerFrame *pageManager,
                                 TAppManagerPageUtils *pageUtils,
                                 std::function<TConfigChanges()> takeSession,
                                 std::function<QString()> panelState)
    : FSession(session), FPageManagerFrame(pageManager), FPageUtils(pageUtils),
      FTakeSession(std::move(takeSession)), FPanelState(std::move(panelState))
{}

void TManagerJournal::Start()
{
    FTimer.setInterval(Interval);
    QObject::connect(&FTimer, &QTimer::timeout, &FTimer, [this] { Tick(); });
    FTimer.start();
}

void TManagerJournal::Tick()
{
    if (FSession->IsJournalRunning())
        return;
    // A disk that stays full is told once, not every few seconds.
    try {
        FSession->FinishJournal();
        if (!FStartedState.isEmpty())
            FWrittenState = std::exchange(FStartedState, {});
        FFailed = false;
    } catch (const std::exception &e) {
        FStartedState.clear();
        if (!std::exchange(FFailed, true))
            TGuard::Handle(e);
    }
    TGuard::Run([this] {
        if (const QString state = State(); state != FWrittenState)
            Start(state);
    });
}

// Who types does not wait for megabytes to be encoded and to reach the disk.
void TManagerJournal::Start(const QString &state)
{
    FSession->StartJournal(FTakeSession());
    FStartedState = state;
}

void TManagerJournal::Write()
{
    const QString state = State();
    if (state == FWrittenState && FStartedState.isEmpty())
        return;
    FStartedState.clear();
    FWrittenState.clear();
    FSession->SaveJournal(FTakeSession());
    FWrittenState = state;
}

// Cheap to take, and another one after each change that the session knows of: texts of megabytes
// are not put together every few seconds to find that nothing has changed.
QString TManagerJournal::State() const
{
    QString state = QString::number(FPageManagerFrame->ActivePageIndex()) + u'|' + FPanelState();
    for (int i = 0; i < FPageManagerFrame->PageCount(); ++i) {
        const auto *page = FPageManagerFrame->GetPageByIndex(i);
        state += QStringLiteral("|%1,").arg(quintptr(page), 0, 16) + page->GetTitle();
        if (const auto *query = qobject_cast<const TQueryPageFrame *>(page))
            state += QStringLiteral(",%1,%2,%3,%4,%5")
                         .arg(query->Revision())
                         .arg(query->IsUnsaved())
                         .arg(query->GetResultHeight())
                         .arg(query->GetFileName(), query->GetUsedDatabaseName());
        else if (const auto *table = qobject_cast<const TTablePageFrame *>(page))
            state += StateOf(table->GetDataSessionData());
    }
    return state;
}

bool TManagerJournal::HasClosedQueries() const
{
    return !FSession->Recovery().IsEmpty();
}

void TManagerJournal::ReopenClosedQuery()
{
    QString text;
    QString fileName;
    if (!FSession->Recovery().TryGetNewest(text, fileName))
        return;
    FPageUtils->ShowQueryFromText(text, {}, 0, true);
    // Its file goes when the text is safe in another one.
    Write();
    FSession->Recovery().Remove(fileName);
    TAppMessages::SendManagerPagesChange();
}
