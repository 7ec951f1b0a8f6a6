#pragma once

#include "shell/uBaseFrame.h"

class QVBoxLayout;
class TDbmManager;
class TTableListFrame;

/// All lists of a table below each other.
class TTableStructureFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TTableStructureFrame(QWidget *owner) : TBaseFrame(owner) {}

    void SetParams(TDbmManager *manager, const QString &databaseName, const QString &tableName);
    void Process();

protected:
    void DoCreate() override;

private:
    template <typename TFrame>
    void AddList(QVBoxLayout &column, const QString &caption);

    std::vector<TTableListFrame *> FListFrames; // children
};
