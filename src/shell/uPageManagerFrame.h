#pragma once

#include "shell/uPageFrame.h"

#include <QIcon>
#include <functional>
#include <vector>

class QTabBar;
class QStackedWidget;
class QToolButton;

enum TPageManagerFrameTabPosition { pmtpTop, pmtpBottom };
enum TPageManagerFrameNewPagePosition { nppNext, nppLast };

/// A tabbed set of pages, each with an identity by which it is found again. Used for the
/// connections of the window and for the pages of each workspace. Hidden pages are marked stale and
/// catch up when they come into view.
class TPageManagerFrame : public TBaseFrame
{
    Q_OBJECT
public:
    using TCreateAction = std::function<TPageFrame *(QWidget *owner)>;

    explicit TPageManagerFrame(QWidget *owner, int pagePadding = 0); // padding in pixels

    void SetTabPosition(TPageManagerFrameTabPosition position);
    TPageManagerFrameNewPagePosition NewPagePosition() const { return FNewPagePosition; }
    void SetNewPagePosition(TPageManagerFrameNewPagePosition value) { FNewPagePosition = value; }
    /// Stay visible without a page.
    void SetShowWhenEmpty(bool value);
    /// A button behind the last tab that fires OnNewButtonClick.
    void SetNewButtonVisible(bool visible, const QString &hint = {});
    void SetCloseButtons(bool visible);

    /// Gives the page with that id, or makes one. With `activate` the page is marked stale, brought
    /// to the front and processed; without it an existing page is left alone. An empty id means the
    /// page has no identity. What the page raises when it loads passes on; the page stays.
    /// Runs what adds many pages. The tabs are laid out once, behind it, and one change is told.
    void AddPages(const std::function<void()> &add);
    TPageFrame *AddPage(const QString &id, const TCreateAction &createAction, const QIcon &image,
                        bool activate);
    /// A page whose CloseQuery says no stays, and comes to the front.
    void ClosePage(TPageFrame *page);
    void CloseActivePage();
    void CloseAllPages();
    /// Asks every page, in order, up to the first that says no, which comes to the front.
    bool CloseQuery();
    /// Marks every page stale and processes the active one.
    void Process();
    bool TryGetPage(const QString &id, TPageFrame *&page) const;
    bool TryGetId(const TPageFrame *page, QString &id) const;
    void SelectNextPage();
    void SelectPrevPage();
    TPageFrame *GetPageByIndex(int index) const; // nullptr outside
    int PageCount() const;
    int ActivePageIndex() const; // -1 without a page
    void SetActivePageIndex(int index);
    TPageFrame *ActivePage() const;
    QStringList GetPagesCaption() const;
    void SetPageImage(TPageFrame *page, const QIcon &image);

Q_SIGNALS:
    /// The set of pages or the active page changed.
    void OnChange();
    void OnNewButtonClick();

protected:
    void DoDestroy() override;
    void DoMoved() override { UpdateVisibility(); }
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct TTabSheetTag
    {
        QString Id;
        TPageFrame *Page = nullptr;
    };
    class TChangeHold;

    void BuildTabs();
    TPageFrame *CreatePage(const QString &id, const TCreateAction &createAction,
                           const QIcon &image);
    void HookPage(TPageFrame *page);
    void ShowTitle(TPageFrame *page);
    int IndexOf(const TPageFrame *page) const;
    void CurrentTabChanged(int index);
    void TabMoved(int from, int to);
    void RemoveTab(int index);
    void RemovePages(const std::function<bool(TPageFrame &)> &condition);
    void ShowPage(int index);
    void UpdateVisibility();
    void FireChange();
    bool TabBarPressed(class QMouseEvent *event);
    void ShowTabMenu(int index, const QPoint &globalPos);

    const int FPagePadding;
    TPageManagerFrameNewPagePosition FNewPagePosition = nppNext;
    bool FShowWhenEmpty = false;
    int FDisableProcess = 0;
    int FDisableChangeEvent = 0;
    bool FIsBatch = false; // many pages are being added
    TPageFrame *FShownPage = nullptr;
    std::vector<TTabSheetTag> FTags; // in the order of the tabs
    QTabBar *tabBar = nullptr;
    QStackedWidget *stack = nullptr;
    QToolButton *butNewPage = nullptr;
    QWidget *tabRow = nullptr;
};
