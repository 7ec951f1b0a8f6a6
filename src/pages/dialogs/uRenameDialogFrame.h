#pragma once

#include "shell/uDialogFrame.h"

#include <functional>

class QLineEdit;

/// Asks for the new name of an object and gives it to an action, which does the work.
class TRenameDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    using TProcessAction = std::function<void(const QString &newName)>;

    explicit TRenameDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

    /// An unchanged name is not given to the action.
    void SetParams(const QString &title, const QString &objectName, TProcessAction processAction);
    QString GetResultName() const;

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = FTitle; }
    void DoPrepare() override;
    void DoProcess() override;

private:
    QString FTitle;
    QString FObjectName;
    TProcessAction FProcessAction;
    QLineEdit *edName = nullptr;
};
