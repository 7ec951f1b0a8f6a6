#pragma once

#include "pages/structure/uTableTabsFrame.h"

/// A view in tabs: its rows, its columns and its properties.
class TViewStructureFrame : public TTableTabsFrame
{
    Q_OBJECT
public:
    explicit TViewStructureFrame(QWidget *owner) : TTableTabsFrame(owner) {}

    void Process() override;

protected:
    void AddActions() override;
    void AddTabs() override;

private:
    enum TTab { ttData, ttFields, ttInfo };

    QStringList Info() const;
    void Modify();
    void Refresh();

    QAction *actOptions = nullptr; // child
};
