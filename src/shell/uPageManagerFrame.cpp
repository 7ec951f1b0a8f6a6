#include "shell/uPageManagerFrame.h"

#include "shell/uGuard.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QStackedWidget>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <memory>

namespace {

/// A tab bar as wide as its tabs. The base class always wants the room of several, which would hold
/// the button behind it off.
class TTightTabBar : public QTabBar
{
public:
    using QTabBar::QTabBar;

    QSize minimumSizeHint() const override { return {1, QTabBar::minimumSizeHint().height()}; }
    void setVisible(bool visible) override
    {
        const bool wasHidden = isHidden();
        QTabBar::setVisible(visible);
        // Choosing a tab lays a hidden bar out, and the base class takes that for its layout.
        QEvent anew(QEvent::StyleChange);
        if (visible && wasHidden)
            QTabBar::changeEvent(&anew);
    }

protected:
    // A hidden bar is laid out when it is shown; until then it would measure all of its tabs with
    // each that comes or goes.
    QSize tabSizeHint(int index) const override
    {
        return isHidden() ? QSize(1, 1) : QTabBar::tabSizeHint(index);
    }
    void initStyleOption(QStyleOptionTab *option, int index) const override
    {
        if (!isHidden())
            QTabBar::initStyleOption(option, index);
    }
};

} // namespace

/// Holds change events back; the last hold to go settles what is seen and fires one, also when an
/// exception is on its way.
class TPageManagerFrame::TChangeHold
{
public:
    explicit TChangeHold(TPageManagerFrame &frame) : FFrame(frame) { ++FFrame.FDisableChangeEvent; }
    ~TChangeHold()
    {
        if (--FFrame.FDisableChangeEvent > 0)
            return;
        FFrame.UpdateVisibility();
        TGuard::Run([this] { FFrame.FireChange(); });
    }
    TChangeHold(const TChangeHold &) = delete;
    TChangeHold &operator=(const TChangeHold &) = delete;

private:
    TPageManagerFrame &FFrame;
};

TPageManagerFrame::TPageManagerFrame(QWidget *owner, int pagePadding)
    : TBaseFrame(owner), FPagePadding(pagePadding)
{
    BuildTabs();
    UpdateVisibility();
}

void TPageManagerFrame::BuildTabs()
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    tabRow = new QWidget(this);
    auto *row = new QHBoxLayout(tabRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    tabBar = new TTightTabBar(tabRow);
    tabBar->setObjectName("tabBar");
    tabBar->setAccessibleName("Pages");
    tabBar->setExpanding(false);
    tabBar->setDocumentMode(true);
    tabBar->setMovable(true);
    tabBar->setTabsClosable(true);
    tabBar->setElideMode(Qt::ElideMiddle);
    tabBar->setUsesScrollButtons(true);
    tabBar->installEventFilter(this);
    row->addWidget(tabBar, 0);
    butNewPage = new QToolButton(tabRow);
    butNewPage->setObjectName("butNewPage");
    butNewPage->setAccessibleName("New tab");
    butNewPage->setText("+");
    butNewPage->setAutoRaise(true);
    butNewPage->hide();
    row->addWidget(butNewPage, 0);
    row->addStretch(1);
    tabRow->installEventFilter(this);
    layout->addWidget(tabRow);

    stack = new QStackedWidget(this);
    stack->setContentsMargins(FPagePadding, FPagePadding, FPagePadding, FPagePadding);
    layout->addWidget(stack, 1);

    connect(tabBar, &QTabBar::currentChanged, this,
            [this](int index) { TGuard::Run([=, this] { CurrentTabChanged(index); }); });
    connect(tabBar, &QTabBar::tabMoved, this, &TPageManagerFrame::TabMoved);
    connect(tabBar, &QTabBar::tabCloseRequested, this,
            [this](int index) { TGuard::Run([=, this] { ClosePage(GetPageByIndex(index)); }); });
    connect(butNewPage, &QToolButton::clicked, this, &TPageManagerFrame::OnNewButtonClick);
}

void TPageManagerFrame::SetTabPosition(TPageManagerFrameTabPosition position)
{
    auto *column = static_cast<QVBoxLayout *>(layout());
    column->removeWidget(tabRow);
    column->insertWidget(position == pmtpTop ? 0 : -1, tabRow);
    tabBar->setShape(position == pmtpTop ? QTabBar::RoundedNorth : QTabBar::RoundedSouth);
}

void TPageManagerFrame::SetShowWhenEmpty(bool value)
{
    FShowWhenEmpty = value;
    UpdateVisibility();
}

void TPageManagerFrame::SetNewButtonVisible(bool visible, const QString &hint)
{
    butNewPage->setVisible(visible);
    butNewPage->setToolTip(hint);
}

void TPageManagerFrame::SetCloseButtons(bool visible)
{
    tabBar->setTabsClosable(visible);
}

void TPageManagerFrame::AddPages(const std::function<void()> &add)
{
    const TChangeHold hold(*this);
    // A bar that is seen measures all of its tabs again with each that comes.
    const QScopedValueRollback batch(FIsBatch, true);
    tabBar->hide();
    add();
}

TPageFrame *TPageManagerFrame::AddPage(const QString &id, const TCreateAction &createAction,
                                       const QIcon &image, bool activate)
{
    const TChangeHold hold(*this);
    TPageFrame *page = nullptr;
    if (id.isEmpty() || !TryGetPage(id, page))
        page = CreatePage(id, createAction, image);
    if (activate) {
        page->RequestProcess();
        UpdateVisibility();
        ShowPage(IndexOf(page));
    }
    return page;
}

TPageFrame *TPageManagerFrame::CreatePage(const QString &id, const TCreateAction &createAction,
                                          const QIcon &image)
{
    const QScopedValueRollback hold(FDisableProcess, FDisableProcess + 1);
    // A window of its own while the page is made: in the main window each widget that finds its
    // place would walk over all widgets of all pages.
    auto newSheet = std::make_unique<QWidget>();
    TPageFrame *page = createAction(newSheet.get());
    QWidget *sheet = newSheet.release(); // the stack's from here on
    const int active = tabBar->currentIndex();
    const int at = FNewPagePosition == nppNext && active >= 0 ? active + 1 : tabBar->count();
    FTags.insert(FTags.begin() + at, TTabSheetTag{id, page});
    stack->insertWidget(at, sheet);
    tabBar->insertTab(at, image, {});
    ShowTitle(page);
    page->MoveTo(sheet);
    HookPage(page);
    return page;
}

void TPageManagerFrame::HookPage(TPageFrame *page)
{
    connect(page, &TPageFrame::OnUpdateTitle, this, [this, page] {
        ShowTitle(page);
        FireChange();
    });
    connect(page, &TPageFrame::OnUpdateId, this,
            [this, page](const QString &id) { FTags[static_cast<size_t>(IndexOf(page))].Id = id; });
    connect(page, &TPageFrame::OnClose, this, [this, page] { ClosePage(page); });
}

void TPageManagerFrame::ShowTitle(TPageFrame *page)
{
    const int index = IndexOf(page);
    tabBar->setTabText(index, page->GetTitle().replace("&", "&&"));
    tabBar->setTabToolTip(index, page->GetTitle());
}

void TPageManagerFrame::ClosePage(TPageFrame *page)
{
    if (IndexOf(page) < 0)
        return;
    if (!page->CloseQuery())
        return ShowPage(IndexOf(page)); // what keeps it open is told there
    const TChangeHold hold(*this);
    const int index = IndexOf(page);
    // A neighbour that fails to draw must not keep this page open.
    if (index == tabBar->currentIndex() && index > 0)
        TGuard::Run([=, this] { ShowPage(index - 1); });
    RemoveTab(index);
}

void TPageManagerFrame::CloseActivePage()
{
    ClosePage(ActivePage());
}

void TPageManagerFrame::CloseAllPages()
{
    RemovePages([](TPageFrame &page) { return page.CloseQuery(); });
}

void TPageManagerFrame::RemovePages(const std::function<bool(TPageFrame &)> &condition)
{
    const TChangeHold changeHold(*this);
    {
        const QScopedValueRollback hold(FDisableProcess, FDisableProcess + 1);
        for (int index = 0; index < PageCount();) {
            if (condition(*GetPageByIndex(index)))
                RemoveTab(index);
            else
                ++index;
        }
    }
    if (ActivePageIndex() >= 0)
        CurrentTabChanged(ActivePageIndex());
}

bool TPageManagerFrame::CloseQuery()
{
    for (const TTabSheetTag &tag : std::vector<TTabSheetTag>(FTags))
        if (!tag.Page->CloseQuery()) {
            TGuard::Run([&] { ShowPage(IndexOf(tag.Page)); });
            return false;
        }
    return true;
}

void TPageManagerFrame::RemoveTab(int index)
{
    TPageFrame *page = GetPageByIndex(index);
    const bool wasShown = page == FShownPage;
    if (wasShown)
        FShownPage = nullptr;
    // The page tears itself down while its tab still stands: what it saves may need the tab's
    // place. One that fails in that goes all the same, since half of it is gone already.
    TGuard::Run([page] { page->PrepareDestroy(); });
    page->disconnect(this);
    QWidget *sheet = stack->widget(index);
    FTags.erase(FTags.begin() + index);
    stack->removeWidget(sheet);
    sheet->hide();
    sheet->deleteLater();
    tabBar->removeTab(index);
    // The bar may have turned to a neighbour before its widget took the same place.
    if (tabBar->currentIndex() >= 0)
        CurrentTabChanged(tabBar->currentIndex());
}

void TPageManagerFrame::Process()
{
    for (const TTabSheetTag &tag : FTags)
        tag.Page->RequestProcess();
    if (TPageFrame *page = ActivePage())
        page->Process();
}

bool TPageManagerFrame::TryGetPage(const QString &id, TPageFrame *&page) const
{
    for (auto tag = FTags.rbegin(); tag != FTags.rend(); ++tag) {
        if (tag->Id != id)
            continue;
        page = tag->Page;
        return true;
    }
    return false;
}

bool TPageManagerFrame::TryGetId(const TPageFrame *page, QString &id) const
{
    const int index = IndexOf(page);
    if (index < 0)
        return false;
    id = FTags[static_cast<size_t>(index)].Id;
    return true;
}

void TPageManagerFrame::SelectNextPage()
{
    if (PageCount() > 0)
        tabBar->setCurrentIndex((tabBar->currentIndex() + 1) % PageCount());
}

void TPageManagerFrame::SelectPrevPage()
{
    if (PageCount() > 0)
        tabBar->setCurrentIndex((tabBar->currentIndex() + PageCount() - 1) % PageCount());
}

TPageFrame *TPageManagerFrame::GetPageByIndex(int index) const
{
    return index < 0 || index >= PageCount() ? nullptr : FTags[static_cast<size_t>(index)].Page;
}

int TPageManagerFrame::PageCount() const
{
    return static_cast<int>(FTags.size());
}

int TPageManagerFrame::ActivePageIndex() const
{
    return tabBar->currentIndex();
}

void TPageManagerFrame::SetActivePageIndex(int index)
{
    TPageFrame *page = GetPageByIndex(index);
    if (!page)
        return;
    page->Process();
    tabBar->setCurrentIndex(index);
}

TPageFrame *TPageManagerFrame::ActivePage() const
{
    return GetPageByIndex(tabBar->currentIndex());
}

QStringList TPageManagerFrame::GetPagesCaption() const
{
    QStringList captions;
    for (const TTabSheetTag &tag : FTags)
        captions += tag.Page->GetTitle();
    return captions;
}

void TPageManagerFrame::SetPageImage(TPageFrame *page, const QIcon &image)
{
    if (const int index = IndexOf(page); index >= 0)
        tabBar->setTabIcon(index, image);
}

void TPageManagerFrame::DoDestroy()
{
    RemovePages([](TPageFrame &) { return true; });
}

int TPageManagerFrame::IndexOf(const TPageFrame *page) const
{
    for (size_t i = 0; i < FTags.size(); ++i)
        if (FTags[i].Page == page)
            return static_cast<int>(i);
    return -1;
}

// Reached by the user's turning to a tab and by every change made in code.
void TPageManagerFrame::CurrentTabChanged(int index)
{
    if (index >= stack->count())
        return;
    stack->setCurrentIndex(index);
    TPageFrame *page = GetPageByIndex(index);
    if (FDisableProcess > 0 || page == FShownPage)
        return;
    if (FShownPage)
        FShownPage->Deactivate();
    FShownPage = page;
    FireChange();
    if (!page)
        return;
    page->Activate();
    page->Process();
}

void TPageManagerFrame::TabMoved(int from, int to)
{
    const TTabSheetTag tag = FTags[static_cast<size_t>(from)];
    FTags.erase(FTags.begin() + from);
    FTags.insert(FTags.begin() + to, tag);
    QWidget *sheet = stack->widget(from);
    stack->removeWidget(sheet);
    stack->insertWidget(to, sheet);
    stack->setCurrentIndex(tabBar->currentIndex());
    FireChange();
}

void TPageManagerFrame::ShowPage(int index)
{
    if (index == tabBar->currentIndex() && GetPageByIndex(index) == FShownPage) {
        FShownPage->Activate();
        FShownPage->Process();
        return;
    }
    const QSignalBlocker blocker(tabBar); // its slot would catch what the page raises
    tabBar->setCurrentIndex(index);
    CurrentTabChanged(index);
}

void TPageManagerFrame::UpdateVisibility()
{
    // An empty bar would still take the room of a tab.
    tabBar->setVisible(!FTags.empty() && !FIsBatch);
    setVisible(FShowWhenEmpty || !FTags.empty());
}

void TPageManagerFrame::FireChange()
{
    if (FDisableChangeEvent > 0)
        return;
    Q_EMIT OnChange();
}

bool TPageManagerFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonDblClick) {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        const bool onTab = watched == tabBar && tabBar->tabAt(mouse->pos()) >= 0;
        if (!onTab && !butNewPage->isHidden()) {
            Q_EMIT OnNewButtonClick();
            return true;
        }
    }
    if (watched == tabBar && event->type() == QEvent::MouseButtonRelease)
        return TabBarPressed(static_cast<QMouseEvent *>(event));
    return TBaseFrame::eventFilter(watched, event);
}

bool TPageManagerFrame::TabBarPressed(QMouseEvent *event)
{
    const int index = tabBar->tabAt(event->pos());
    if (index < 0)
        return false;
    if (event->button() == Qt::MiddleButton) {
        TGuard::Run([=, this] { ClosePage(GetPageByIndex(index)); });
        return true;
    }
    if (event->button() == Qt::RightButton) {
        ShowTabMenu(index, event->globalPosition().toPoint());
        return true;
    }
    return false;
}

void TPageManagerFrame::ShowTabMenu(int index, const QPoint &globalPos)
{
    QMenu menu(this);
    menu.setObjectName("pmTabs");
    TPageFrame *page = GetPageByIndex(index);
    QAction *close = menu.addAction("Close");
    close->setObjectName("actTabClose");
    QAction *closeAll = menu.addAction("Close All");
    closeAll->setObjectName("actTabCloseAll");
    const QAction *chosen = menu.exec(globalPos);
    if (chosen == close)
        TGuard::Run([=, this] { ClosePage(page); });
    else if (chosen == closeAll)
        TGuard::Run([this] { CloseAllPages(); });
}
