#include "pages/data/uTableDataControls.h"

#include "widgets/uIcons.h"
#include "widgets/uStyle.h"
#include "widgets/uToolBar.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolButton>
#include <QVBoxLayout>

TTableDataControls::TTableDataControls(QWidget *page) : QObject(page), FPage(page)
{
    MakeActions();
    auto *column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(MakeToolBar());
    pcData = new QStackedWidget(page);
    pcData->setObjectName("pcData");
    tshData = new QWidget(pcData);
    tshData->setObjectName("tshData");
    memError = new QPlainTextEdit(pcData);
    memError->setObjectName("memError");
    memError->setAccessibleName("Error");
    memError->setReadOnly(true);
    memError->setFont(TAppStyle::MonospaceFont());
    memError->setTabChangesFocus(true);
    pcData->addWidget(tshData);
    pcData->addWidget(memError);
    column->addWidget(pcData, 1);
    panFilter = new QWidget(page);
    panFilter->setObjectName("panFilter");
    panFilter->hide();
    column->addWidget(panFilter);
    auto *statusBar = new QStatusBar(page);
    statusBar->setObjectName("sbrData");
    statusBar->setSizeGripEnabled(false);
    labRows = new QLabel(statusBar);
    labRows->setObjectName("labRows");
    statusBar->addWidget(labRows);
    column->addWidget(statusBar);
}

QAction *TTableDataControls::MakeAction(const char *name, const QString &caption,
                                        const QString &hint, const char *icon)
{
    auto *action = new QAction(TIcons::Icon(icon), caption, this);
    action->setObjectName(name);
    action->setToolTip(hint);
    return action;
}

void TTableDataControls::MakeActions()
{
    actCreate = MakeAction("actCreate", "New", "New record", "add");
    actUpdate = MakeAction("actUpdate", "Edit...", "Edit record", "edit");
    actDelete = MakeAction("actDelete", "Delete...", "Delete record", "remove");
    actEditMode = MakeAction("actEditMode", "Edit mode", "Edit mode", "edit-mode");
    actShowText = MakeAction("actShowText", "'TEXT' values", "Show \"TEXT\" values", "text-values");
    actFilter = MakeAction("actFilter", "Filter", "Use filter", "filter");
    actFirstPage = MakeAction("actFirstPage", "First Page", "Go to the first page", "first");
    actPrevPage = MakeAction("actPrevPage", "Previous Page", "Go to the previous page", "prev");
    actNextPage = MakeAction("actNextPage", "Next Page", "Go to the next page", "next");
    actLastPage = MakeAction("actLastPage", "Last Page", "Go to the last page", "last");
    actRefresh = MakeAction("actRefresh", "Refresh", "Refresh", "refresh");
    actTruncate = MakeAction("actTruncate", "Truncate", "Truncate table", "clear");
    actOpenObject = MakeAction("actOpenObject", "Open Object", "Open Object", "open");
    for (QAction *action : {actEditMode, actShowText, actFilter})
        action->setCheckable(true);
}

QToolBar *TTableDataControls::MakeToolBar()
{
    auto *toolBar = new TToolBar(FPage, "tbrData");
    toolBar->addAction(actCreate);
    toolBar->addSeparator();
    toolBar->addActions({actUpdate, actDelete});
    toolBar->addSeparator();
    toolBar->addActions({actEditMode, actShowText, actFilter});
    toolBar->addSeparator();
    AddPageControls(*toolBar);
    toolBar->addSeparator();
    toolBar->addAction(actRefresh);
    // The known glyphs stand alone, so that the whole bar fits beside the objects.
    for (QAction *action : {actCreate, actUpdate, actDelete, actFirstPage, actPrevPage, actNextPage,
                            actLastPage, actRefresh})
        if (auto *button = qobject_cast<QToolButton *>(toolBar->widgetForAction(action))) {
            button->setToolButtonStyle(Qt::ToolButtonIconOnly);
            button->setAccessibleName(action->text());
        }
    return toolBar;
}

void TTableDataControls::AddPageControls(QToolBar &toolBar)
{
    toolBar.addActions({actFirstPage, actPrevPage});
    edPageNum = MakePageEdit(toolBar, "edPageNum", "Page:");
    edPageCount = MakePageEdit(toolBar, "edPageCount", "/");
    edPageCount->setEnabled(false);
    toolBar.addActions({actNextPage, actLastPage});
    toolBar.addSeparator();
    auto *label = new QLabel("Rows:", &toolBar);
    toolBar.addWidget(label);
    cbxRows = new QComboBox(&toolBar);
    cbxRows->setObjectName("cbxRows");
    cbxRows->setToolTip("Rows:");
    cbxRows->setAccessibleName("Rows:");
    cbxRows->setEditable(true);
    cbxRows->setInsertPolicy(QComboBox::NoInsert);
    cbxRows->setCompleter(nullptr); // it would make 500 of 50
    cbxRows->addItems({"100", "500", "1000", "5000", "10000"});
    cbxRows->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cbxRows->setMinimumContentsLength(6);
    cbxRows->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    label->setBuddy(cbxRows);
    toolBar.addWidget(cbxRows);
}

QLineEdit *TTableDataControls::MakePageEdit(QToolBar &toolBar, const char *name,
                                            const QString &caption)
{
    auto *label = new QLabel(caption, &toolBar);
    const int space = label->fontMetrics().averageCharWidth();
    label->setContentsMargins(space, 0, space, 0);
    auto *edit = new QLineEdit(&toolBar);
    edit->setObjectName(name);
    edit->setToolTip(caption);
    edit->setAccessibleName(caption);
    edit->setAlignment(Qt::AlignRight);
    edit->setFixedWidth(space * 8);
    label->setBuddy(edit);
    toolBar.addWidget(label);
    toolBar.addWidget(edit);
    return edit;
}

void TTableDataControls::ShowError(const QString &text)
{
    memError->setPlainText(text);
    pcData->setCurrentWidget(memError);
}

void TTableDataControls::ShowData()
{
    memError->clear();
    pcData->setCurrentWidget(tshData);
}

bool TTableDataControls::IsErrorShown() const
{
    return pcData->currentWidget() == memError;
}

void TTableDataControls::SetStatus(const QString &text)
{
    labRows->setText(text);
}
