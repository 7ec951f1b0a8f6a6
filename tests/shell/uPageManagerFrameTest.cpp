#include "shell/uPageManagerFrame.h"
#include "support/uException.h"
#include "uGuiTools.h"

#include <gtest/gtest.h>

namespace {

QStringList Calls;

class TTestPage : public TPageFrame
{
public:
    explicit TTestPage(QWidget *owner) : TPageFrame(owner) {}
    QString Name;
    bool MayClose = true;
    bool FailsToLoad = false;

protected:
    QString DoGetTitle() const override { return Name; }
    void DoLoad() override
    {
        Calls += "load " + Name;
        if (FailsToLoad)
            throw EException("cannot load");
    }
    void DoUnload() override { Calls += "unload " + Name; }
    void DoActivate() override { Calls += "activate " + Name; }
    void DoDeactivate() override { Calls += "deactivate " + Name; }
    void DoProcess() override { Calls += "draw " + Name; }
    bool DoCloseQuery() override { return MayClose; }
};

class TPagesTest : public ::testing::Test
{
protected:
    TPagesTest()
    {
        Calls.clear();
        Pages = TBaseFrame::New<TPageManagerFrame>(&Window, 0);
        Pages->MoveTo(&Window);
        QObject::connect(Pages, &TPageManagerFrame::OnChange, &Window, [this] { ++Changes; });
        Window.resize(600, 400);
        TGuiTools::Show(&Window);
    }
    ~TPagesTest() override { Pages->PrepareDestroy(); }

    TTestPage *Add(const QString &name, const QString &id, bool activate = true, bool fails = false)
    {
        return static_cast<TTestPage *>(Pages->AddPage(
            id,
            [&](QWidget *owner) {
                auto *page = TBaseFrame::New<TTestPage>(owner);
                page->Name = name;
                page->FailsToLoad = fails;
                return page;
            },
            QIcon(), activate));
    }
    QStringList TakeCalls() { return std::exchange(Calls, {}); }

    QWidget Window;
    TPageManagerFrame *Pages = nullptr;
    int Changes = 0;
};

TEST_F(TPagesTest, APageIsLoadedOnceAndFoundByItsIdentity)
{
    EXPECT_FALSE(Pages->isVisible());
    TTestPage *a = Add("a", "id.a");
    EXPECT_TRUE(Pages->isVisible());
    EXPECT_EQ(TakeCalls(), (QStringList{"activate a", "load a", "draw a"}));
    EXPECT_EQ(Changes, 1);
    Add("b", "id.b");
    TakeCalls();
    EXPECT_EQ(Add("never made", "id.a"), a);
    EXPECT_EQ(TakeCalls(), (QStringList{"deactivate b", "activate a", "draw a"}));
    EXPECT_NE(Add("a again", ""), Add("a again", "")) << "without an identity each is new";
    TPageFrame *found = nullptr;
    EXPECT_FALSE(Pages->TryGetPage("ID.A", found));
    QString id;
    EXPECT_TRUE(Pages->TryGetId(a, id));
    EXPECT_EQ(id, "id.a");
}

TEST_F(TPagesTest, NewPagesComeBehindTheActiveOne)
{
    Add("a", "a");
    Add("c", "c");
    Pages->SetActivePageIndex(0);
    Add("b", "b");
    EXPECT_EQ(Pages->GetPagesCaption(), (QStringList{"a", "b", "c"}));
    Pages->SetNewPagePosition(nppLast);
    Add("z", "z");
    EXPECT_EQ(Pages->GetPagesCaption().last(), "z");
}

TEST_F(TPagesTest, HiddenPagesCatchUpWhenTheyComeIntoView)
{
    Add("a", "a");
    Add("b", "b");
    TakeCalls();
    Pages->Process();
    EXPECT_EQ(TakeCalls(), QStringList("draw b"));
    Pages->SelectPrevPage();
    EXPECT_EQ(TakeCalls(), (QStringList{"deactivate b", "activate a", "draw a"}));
    Pages->SelectPrevPage(); // round to the last
    EXPECT_EQ(TakeCalls(), (QStringList{"deactivate a", "activate b"})) << "b was drawn meanwhile";
}

TEST_F(TPagesTest, ClosingTheActivePageShowsTheOneBefore)
{
    Add("a", "a");
    Add("b", "b");
    TTestPage *c = Add("c", "c");
    Pages->SetActivePageIndex(1);
    TakeCalls();
    Changes = 0;
    Pages->CloseActivePage();
    EXPECT_EQ(Pages->ActivePage()->GetTitle(), "a");
    EXPECT_TRUE(Calls.contains("unload b"));
    EXPECT_EQ(Changes, 1);
    c->Close();
    EXPECT_EQ(Pages->GetPagesCaption(), QStringList("a"));
    Pages->CloseAllPages();
    EXPECT_EQ(Pages->PageCount(), 0);
    EXPECT_FALSE(Pages->isVisible());
}

TEST_F(TPagesTest, APageThatMayNotBeClosedStays)
{
    Add("a", "a");
    Add("b", "b")->MayClose = false;
    Add("c", "c");
    const auto front = [this] { return Pages->ActivePage()->GetTitle(); };
    EXPECT_FALSE(Pages->CloseQuery());
    EXPECT_EQ(front(), "b") << "it tells why";
    Pages->SetActivePageIndex(0);
    Pages->ClosePage(Pages->GetPageByIndex(1));
    EXPECT_EQ(front(), "b");
    Pages->CloseAllPages();
    EXPECT_EQ(Pages->GetPagesCaption(), QStringList("b"));
    EXPECT_EQ(front(), "b");
}

TEST_F(TPagesTest, AFailureToLoadLeavesThePageAndPassesOn)
{
    EXPECT_THROW(Add("x", "x", true, true), EException);
    ASSERT_EQ(Pages->PageCount(), 1);
    EXPECT_EQ(Changes, 1);
    TakeCalls();
    Pages->Process(); // counts as loaded
    EXPECT_EQ(TakeCalls(), QStringList("draw x"));
}

} // namespace
