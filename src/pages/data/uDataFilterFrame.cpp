#include "pages/data/uDataFilterFrame.h"

#include "pages/query/uEditorFrame.h"
#include "shell/uGuard.h"
#include "widgets/uTextEditor.h"

#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

void TDataFilterFrame::DoCreate()
{
    auto *group = new QGroupBox("Filter (WHERE [...] SQL-block)", this);
    auto *column = new QVBoxLayout(group);
    auto *panEditor = new QWidget(group);
    FEditorFrame = New<TSqlEditorFrame>(panEditor);
    FEditorFrame->MoveTo(panEditor);
    FEditorFrame->Editor().setAccessibleName("Filter");
    FEditorFrame->Editor().SetGutterVisible(false);
    FEditorFrame->Editor().SetScrollBarsVisible(false);
    panEditor->setFixedHeight(fontMetrics().lineSpacing() * 4);
    column->addWidget(panEditor);
    auto *labApply = new QLabel("<a href=\"apply\">Apply</a>", group);
    labApply->setObjectName("labApply");
    labApply->setToolTip("Ctrl+Enter");
    labApply->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    column->addWidget(labApply);
    auto *outer = new QVBoxLayout(this);
    outer->addWidget(group);
    setFocusProxy(FEditorFrame);

    auto *actApply = new QAction("Apply", this);
    actApply->setObjectName("actApply");
    actApply->setShortcuts({QKeySequence("Ctrl+Return"), QKeySequence("Ctrl+Enter")});
    actApply->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(actApply);
    connect(labApply, &QLabel::linkActivated, actApply, &QAction::trigger);
    connect(actApply, &QAction::triggered, this, [this] {
        if (FOnApply)
            TGuard::Run(FOnApply);
    });
}

QString TDataFilterFrame::Text() const
{
    return FEditorFrame->Text().trimmed();
}

void TDataFilterFrame::SetText(const QString &text)
{
    FEditorFrame->SetText(text);
}
