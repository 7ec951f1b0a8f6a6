#include "shell/uManagerJournal.h"

#include "app/uAppSession.h"
#include "pages/query/uQueryPageFrame.h"
#include "shell/uAppManagerPageUtils.h"
#include "shell/uAppMessages.h"
#include "shell/uGuard.h"
#include "shell/uPageManagerFrame.h"

namespace {

constexpr int Interval = 3000; // milliseconds; what a crash can take at most

} // namespace

TManagerJournal::TManagerJournal(TAppSession *session, TPageManagerFrame *pageManager,
                                 TAppManagerPageUtils *pageUtils,
                                 std::function<void()> writeSession)
    : FSession(session), FPageManagerFrame(pageManager), FPageUtils(pageUtils),
      FWriteSession(std::move(writeSession))
{}

void TManagerJournal::Start()
{
    FPageUtils->SetOnDropText([this](const QString &text) { KeepText(text); });
    FTimer.setInterval(Interval);
    QObject::connect(&FTimer, &QTimer::timeout, &FTimer, [this] { Tick(); });
    FTimer.start();
}

void TManagerJournal::Tick()
{
    // A disk that stays full is told once, not every few seconds.
    try {
        Write();
        FFailed = false;
    } catch (const std::exception &e) {
        if (!FFailed) {
            FFailed = true;
            TGuard::Handle(e);
        }
    }
}

void TManagerJournal::Write()
{
    const QString state = State();
    if (state == FWrittenState)
        return;
    FWriteSession();
    FSession->SaveJournal();
    FWrittenState = state;
}

// Cheap to take, and another one after each change that the session knows of: texts of megabytes
// are not put together every few seconds to find that nothing has changed.
QString TManagerJournal::State() const
{
    QString state = QString::number(FPageManagerFrame->ActivePageIndex());
    for (int i = 0; i < FPageManagerFrame->PageCount(); ++i) {
        const auto *page = FPageManagerFrame->GetPageByIndex(i);
        state += QStringLiteral("|%1,").arg(quintptr(page), 0, 16) + page->GetTitle();
        if (const auto *query = qobject_cast<const TQueryPageFrame *>(page))
            state += QStringLiteral(",%1,%2,%3,%4,%5")
                         .arg(query->Revision())
                         .arg(query->IsUnsaved())
                         .arg(query->GetResultHeight())
                         .arg(query->GetFileName(), query->GetUsedDatabaseName());
    }
    return state;
}

void TManagerJournal::KeepText(const QString &text)
{
    if (!FWorkspaceClosing)
        FSession->Recovery().Store(text);
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
