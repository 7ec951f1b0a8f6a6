#include "pages/dialogs/uRenameDialogFrame.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

void TRenameDialogFrame::DoCreate()
{
    auto *label = new QLabel("&New name:", this);
    edName = new QLineEdit(this);
    edName->setObjectName("edName");
    edName->setAccessibleName("New name:");
    label->setBuddy(edName);
    auto *column = new QVBoxLayout(this);
    column->addWidget(label);
    column->addWidget(edName);
    column->addStretch();
    resize(fontMetrics().averageCharWidth() * 60, column->sizeHint().height());
    connect(edName, &QLineEdit::textChanged, this,
            [this](const QString &text) { Q_EMIT OnEnableOkButton(!text.trimmed().isEmpty()); });
}

void TRenameDialogFrame::SetParams(const QString &title, const QString &objectName,
                                   TProcessAction processAction)
{
    FTitle = title;
    FObjectName = objectName;
    FProcessAction = std::move(processAction);
    edName->setText(objectName);
}

void TRenameDialogFrame::DoPrepare()
{
    edName->selectAll();
}

void TRenameDialogFrame::DoProcess()
{
    if (const QString name = GetResultName(); name != FObjectName)
        FProcessAction(name);
}

QString TRenameDialogFrame::GetResultName() const
{
    // What was not touched stays, also blanks at its ends.
    return edName->text() == FObjectName ? FObjectName : edName->text().trimmed();
}
