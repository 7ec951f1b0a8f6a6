#pragma once

#include "shell/uBaseFrame.h"

class TDataSet;
class TGridView;

/// The plan of a statement as a list.
class TQueryExplainFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TQueryExplainFrame(QWidget *owner);

    void Initialize(TDataSet *dataset) { FDataset = dataset; } // not owned
    void InitializeNull() { FDataset = nullptr; }
    void Process();

protected:
    void DoCreate() override;

private:
    TDataSet *FDataset = nullptr;
    TGridView *lvExplain = nullptr;
};
