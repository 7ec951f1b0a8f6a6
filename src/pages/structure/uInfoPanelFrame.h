#pragma once

#include "shell/uBaseFrame.h"

#include <QStringList>

class TGridView;

/// A list of properties and their values.
class TInfoPanelFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TInfoPanelFrame(QWidget *owner) : TBaseFrame(owner) {}

    void SetCaptions(const QStringList &captions);
    /// In the order of the captions; what is missing is empty.
    void SetValues(const QStringList &values);

protected:
    void DoCreate() override;

private:
    QStringList FCaptions;
    TGridView *lvInfo = nullptr;
};
