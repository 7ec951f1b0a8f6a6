#include "pages/structure/uTableStructureFrame.h"

#include "pages/structure/uTableListFrames.h"

#include <QGroupBox>
#include <QScrollArea>
#include <QVBoxLayout>

void TTableStructureFrame::DoCreate()
{
    TBaseFrame::DoCreate();
    auto *scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    auto *content = new QWidget(scroll);
    auto *column = new QVBoxLayout(content);
    AddList<TTableFieldsFrame>(*column, "Fields");
    AddList<TTableIndexesFrame>(*column, "Indexes");
    AddList<TTableReferencesFrame>(*column, "References");
    AddList<TTableDependenciesFrame>(*column, "Dependencies");
    AddList<TTableTriggersFrame>(*column, "Triggers");
    column->addStretch(1);
    scroll->setWidget(content);
    auto *fill = new QVBoxLayout(this);
    fill->setContentsMargins(0, 0, 0, 0);
    fill->addWidget(scroll);
}

template <typename TFrame>
void TTableStructureFrame::AddList(QVBoxLayout &column, const QString &caption)
{
    auto *group = new QGroupBox(caption, column.parentWidget());
    (new QVBoxLayout(group))->setContentsMargins(0, 0, 0, 0);
    auto *frame = New<TFrame>(group);
    group->layout()->addWidget(frame);
    column.addWidget(group);
    FListFrames.push_back(frame);
}

void TTableStructureFrame::SetParams(TDbmManager *manager, const QString &databaseName,
                                     const QString &tableName)
{
    for (TTableListFrame *frame : FListFrames)
        frame->SetParams(manager, databaseName, tableName);
}

void TTableStructureFrame::Process()
{
    for (TTableListFrame *frame : FListFrames) {
        frame->Process();
        frame->setFixedHeight(frame->GetWorkHeight());
    }
}
