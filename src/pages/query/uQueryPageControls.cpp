#include "pages/query/uQueryPageControls.h"

#include "widgets/uDropDownCombo.h"
#include "widgets/uIcons.h"
#include "widgets/uStylePalette.h"
#include "widgets/uToolBar.h"

#include <QAction>
#include <QActionGroup>
#include <QFrame>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtMath>
#include <algorithm>

namespace {

QVBoxLayout *MakeColumn(QWidget *parent)
{
    auto *column = new QVBoxLayout(parent);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    return column;
}

} // namespace

TQueryPageControls::TQueryPageControls(QWidget *page) : QObject(page), FPage(page)
{
    MakeActions();
    QVBoxLayout *column = MakeColumn(page);
    splResult = new QSplitter(Qt::Vertical, page);
    splResult->setObjectName("splResult");
    splResult->setChildrenCollapsible(false);
    splResult->addWidget(MakeEditorArea());
    splResult->addWidget(MakeResultArea());
    splResult->setStretchFactor(0, 1);
    column->addWidget(splResult);
}

QAction *TQueryPageControls::MakeAction(const char *name, const QString &caption,
                                        const QString &hint, const char *icon)
{
    auto *action = new QAction(TIcons::Icon(icon), caption, this);
    action->setObjectName(name);
    if (!hint.isEmpty())
        action->setToolTip(hint);
    return action;
}

void TQueryPageControls::MakeActions()
{
    actExecute = MakeAction("actExecute", "Execute", "Execute query", "execute");
    actExecuteSelected =
        MakeAction("actExecuteSelected", "Execute Selected", {}, "execute-selected");
    actSave = MakeAction("actSave", "Save", "Save query", "save");
    actSaveAs = MakeAction("actSaveAs", "Save As...", {}, "save-as");
    actDuplicate = MakeAction("actDuplicate", "Duplicate", {}, "duplicate");
    actExportAsCVS = MakeAction("actExportAsCVS", "Export as CVS...", {}, "export-csv");
    actExportAsText = MakeAction("actExportAsText", "Export as Text", {}, "export-text");
    actGotoResult = MakeAction("actGotoResult", "Result", "Result", "result");
    actGotoExplain = MakeAction("actGotoExplain", "Explain", "Explain", "explain");
    actGotoLog = MakeAction("actGotoLog", "Log", "Log", "log");
    auto *group = new QActionGroup(this);
    for (QAction *action : {actGotoResult, actGotoExplain, actGotoLog}) {
        action->setCheckable(true);
        group->addAction(action);
    }
}

QWidget *TQueryPageControls::MakeEditorArea()
{
    auto *area = new QWidget(FPage);
    area->setObjectName("panEditorArea");
    QVBoxLayout *column = MakeColumn(area);
    column->addWidget(MakeEditorToolBar(area));
    panEditor = new QWidget(area);
    panEditor->setObjectName("panEditor");
    column->addWidget(panEditor, 1);
    MakeErrorBox(area, column);
    return area;
}

QToolBar *TQueryPageControls::MakeEditorToolBar(QWidget *parent)
{
    auto *toolBar = new TToolBar(parent, "tbrEditor");
    auto *labUse = new QLabel("Use:", toolBar);
    labUse->setContentsMargins(labUse->fontMetrics().averageCharWidth(), 0,
                               labUse->fontMetrics().averageCharWidth(), 0);
    cbxUse = new TDropDownCombo(toolBar);
    cbxUse->setObjectName("cbxUse");
    cbxUse->setToolTip("Use:");
    cbxUse->setAccessibleName("Use:");
    cbxUse->setMaxVisibleItems(16);
    cbxUse->setMinimumContentsLength(16);
    cbxUse->setSizeAdjustPolicy(QComboBox::AdjustToContentsOnFirstShow);
    labUse->setBuddy(cbxUse);
    FUseActions[0] = toolBar->addWidget(labUse);
    FUseActions[1] = toolBar->addWidget(cbxUse);
    toolBar->addAction(actExecute);

    auto *butExport = new QToolButton(toolBar);
    butExport->setObjectName("butExport");
    butExport->setFocusPolicy(Qt::TabFocus);
    butExport->setIcon(TIcons::Icon("export"));
    butExport->setToolTip("Export result");
    butExport->setAccessibleName("Export result");
    butExport->setToolButtonStyle(Qt::ToolButtonIconOnly);
    butExport->setPopupMode(QToolButton::InstantPopup);
    auto *menu = new QMenu(butExport);
    menu->setObjectName("pmExport");
    menu->addAction(actExportAsCVS);
    menu->addAction(actExportAsText);
    butExport->setMenu(menu);
    toolBar->addWidget(butExport);
    toolBar->addAction(actSave);
    return toolBar;
}

void TQueryPageControls::MakeErrorBox(QWidget *parent, QVBoxLayout *column)
{
    memError = new QPlainTextEdit(parent);
    memError->setObjectName("memError");
    memError->setAccessibleName("Error");
    memError->setReadOnly(true);
    memError->setTabChangesFocus(true);
    memError->setFrameShape(QFrame::StyledPanel);
    const int margins =
        2 * memError->frameWidth() + qCeil(2 * memError->document()->documentMargin());
    memError->setFixedHeight(memError->fontMetrics().lineSpacing() * 2 + margins);
    memError->hide();
    column->addWidget(memError);
}

QWidget *TQueryPageControls::MakeResultArea()
{
    auto *area = new QWidget(FPage);
    area->setObjectName("panResultArea");
    QVBoxLayout *column = MakeColumn(area);
    column->addWidget(MakeResultToolBar(area));
    pgcResult = new QStackedWidget(area);
    pgcResult->setObjectName("pgcResult");
    static const char *const names[] = {"tshResult", "tshExplain", "tshLog"};
    for (int tab = 0; tab < 3; ++tab) {
        tshTabs[tab] = new QWidget(pgcResult);
        tshTabs[tab]->setObjectName(names[tab]);
        pgcResult->addWidget(tshTabs[tab]);
    }
    column->addWidget(pgcResult, 1);
    column->addWidget(MakeStatusBar(area));
    return area;
}

QToolBar *TQueryPageControls::MakeResultToolBar(QWidget *parent)
{
    auto *toolBar = new TToolBar(parent, "tbrResult");
    toolBar->addActions({actGotoResult, actGotoExplain, actGotoLog});
    return toolBar;
}

QWidget *TQueryPageControls::MakeStatusBar(QWidget *parent)
{
    auto *statusBar = new QStatusBar(parent);
    statusBar->setObjectName("sbrResult");
    statusBar->setSizeGripEnabled(false);
    for (auto [label, name] : {std::pair{&labRows, "labRows"}, std::pair{&labTime, "labTime"},
                               std::pair{&labFileName, "labFileName"}}) {
        *label = new QLabel(statusBar);
        (*label)->setObjectName(name);
        (*label)->setTextFormat(Qt::PlainText);
        (*label)->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    // Numbers change with every run; a fixed room keeps the panels from jumping.
    const int room = labRows->fontMetrics().averageCharWidth() * 20;
    labRows->setMinimumWidth(room);
    labTime->setMinimumWidth(room);
    labFileName->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar->addWidget(labRows);
    statusBar->addWidget(labTime);
    statusBar->addWidget(labFileName, 1);
    return statusBar;
}

void TQueryPageControls::SetUseVisible(bool visible)
{
    for (QAction *action : FUseActions)
        action->setVisible(visible);
}

void TQueryPageControls::SetResultHeight(int height)
{
    const int all = splResult->height() > 0 ? splResult->height() : FPage->height();
    splResult->setSizes({std::max(0, all - height), height});
}

int TQueryPageControls::ResultHeight() const
{
    return splResult->sizes().value(1);
}

void TQueryPageControls::ShowError(const QString &text)
{
    QPalette palette = memError->palette();
    palette.setColor(QPalette::Text, TAppPalette::ErrorText(FPage->palette()));
    memError->setPalette(palette);
    memError->setPlainText(text);
    memError->setVisible(!text.isEmpty());
}

void TQueryPageControls::SetStatus(const QString &rows, const QString &time,
                                   const QString &fileName)
{
    labRows->setText(rows);
    labTime->setText(time);
    labFileName->setText(fileName);
    labFileName->setToolTip(fileName);
}

void TQueryPageControls::SetActiveTab(int tab)
{
    QAction *const actions[] = {actGotoResult, actGotoExplain, actGotoLog};
    actions[tab]->setChecked(true);
    pgcResult->setCurrentIndex(tab);
}

int TQueryPageControls::ActiveTab() const
{
    return pgcResult->currentIndex();
}
