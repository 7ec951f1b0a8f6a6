#pragma once

#include "shell/uDialogFrame.h"

#include <QStringList>

class TGridView;

/// Lets the user choose one name of a list.
class TSelectDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TSelectDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

    /// `selected` is focused at the start if it is in the list.
    void SetParams(const QString &title, const QStringList &names, const QString &selected = {});
    QString GetResultName() const; // empty without a focused row

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = FTitle; }
    void DoGetOkButtonTitle(QString &title) const override { title = "Select"; }
    void DoPrepare() override;

private:
    QString FTitle;
    TGridView *lvList = nullptr;
};
