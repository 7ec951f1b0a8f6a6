#pragma once

#include <QtGlobal>

/// Refuses memory before the machine runs out of it. Linux grants more memory than there is and
/// ends the process when it is used, so a refused allocation alone is no protection.
class TMemoryBudget
{
public:
    /// Bytes that a result may hold at most; 0 asks the machine as the result grows.
    void SetLimit(qint64 bytes) { FLimit = bytes; }
    /// To be called ahead of each growth from `held` by `more` bytes. Raises std::bad_alloc when it
    /// does not fit.
    void Claim(qint64 held, qint64 more);
    void Clear() { FChecked = 0; }

    /// Bytes that this process can use before the machine or its control group swaps or kills.
    static qint64 Available();

private:
    qint64 FLimit = 0;
    qint64 FChecked = 0; // bytes held up to which the machine was asked
};
