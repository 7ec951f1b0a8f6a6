#pragma once

#include "client/uDataSet.h"
#include "sql/uDatasetUtils.h"

/// Walks over all rows of a dataset while bound grids stand still. Ends on the first row.
class TDatasetWalk
{
public:
    explicit TDatasetWalk(TDataSet &dataset) : FDataset(dataset) { FDataset.DisableControls(); }
    ~TDatasetWalk() { FDataset.EnableControls(); }
    TDatasetWalk(const TDatasetWalk &) = delete;
    TDatasetWalk &operator=(const TDatasetWalk &) = delete;

    void ForEach(const std::function<void(TDataSet &)> &action)
    {
        TDatasetUtils::ForEach(FDataset, action);
        FDataset.First();
    }

private:
    TDataSet &FDataset;
};
