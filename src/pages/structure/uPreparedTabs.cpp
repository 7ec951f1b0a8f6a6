#include "pages/structure/uPreparedTabs.h"

#include "shell/uBaseFrame.h"
#include "shell/uGuard.h"
#include "widgets/uIcons.h"

TPreparedTabs::TPreparedTabs(QWidget *parent) : QTabWidget(parent)
{
    setObjectName("pcTabs");
    setDocumentMode(true);
    connect(this, &QTabWidget::currentChanged, this, [this](int index) {
        if (index >= 0 && size_t(index) < FTabs.size() && isVisible())
            TGuard::Run([=, this] { Prepare(index); });
    });
}

void TPreparedTabs::AddTab(const char *name, const QString &caption, const QString &icon,
                           TCreate create, TFill fill)
{
    FTabs.push_back({caption, std::move(create), std::move(fill)});
    auto *sheet = new QWidget(this);
    sheet->setObjectName(name);
    addTab(sheet, TIcons::Icon(icon), caption);
}

void TPreparedTabs::showEvent(QShowEvent *event)
{
    QTabWidget::showEvent(event);
    // A tab may have been chosen while another page stood in front of this one.
    if (FIsProcessed)
        TGuard::Run([this] { Prepare(currentIndex()); });
}

void TPreparedTabs::Process()
{
    FIsProcessed = true;
    for (TTab &tab : FTabs)
        tab.IsDirty = true;
    Prepare(currentIndex());
}

void TPreparedTabs::Prepare(int index)
{
    TTab &tab = FTabs[size_t(index)];
    if (!tab.Frame) {
        tab.Frame = tab.Create(widget(index));
        tab.Frame->MoveTo(widget(index));
        if (QWidget *content = tab.Frame->focusProxy();
            content && content->accessibleName().isEmpty())
            content->setAccessibleName(tab.Caption);
    }
    if (!tab.IsDirty)
        return;
    tab.IsDirty = false;
    tab.Fill();
}
