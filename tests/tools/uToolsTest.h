#pragma once

#include "client/uClientTools.h"

/// A session of the product's own on the test's database.
using TToolsTest = TClientTest;

/// Counts what a bound grid would hear of.
class TCountingLink : public TDataLink
{
public:
    explicit TCountingLink(TDataSet &dataset) : FDataset(dataset) { FDataset.AddLink(this); }
    ~TCountingLink() override { FDataset.RemoveLink(this); }
    void CursorMoved() override { ++Moves; }
    int Moves = 0;

private:
    TDataSet &FDataset;
};
