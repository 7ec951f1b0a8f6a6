#pragma once

#include <cstdint>
#include <vector>

class TDataSet;

/// Puts the rows of a dataset in the order of one column, as an index of row numbers: the rows
/// themselves stay where they are.
class TDataSetSort
{
public:
    /// NULL comes first, numbers by value, everything else by the bytes of the server's text, which
    /// for Unicode is the order of the code points. Equal values keep the order of the rows, in
    /// both directions.
    static std::vector<uint32_t> Order(const TDataSet &dataset, int field, bool ascending);
};
