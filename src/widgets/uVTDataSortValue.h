#pragma once

#include <QString>
#include <QVariant>

/// What a node is sorted by, taken out of a variant once so that a sort of many nodes does not
/// convert anew in each comparison. Nothing comes first, then numbers by value, then moments in
/// time, then text without regard to case.
class TVTDataSortValue
{
public:
    explicit TVTDataSortValue(const QVariant &value);

    /// Negative, zero or positive as this one comes before, beside or after the other.
    int Compare(const TVTDataSortValue &other) const;

private:
    enum TRank { rkNull, rkNumber, rkMoment, rkText };

    void SetNumber(const QVariant &value);
    void SetMoment(const QVariant &value);

    TRank FRank = rkNull;
    // Holds signed and unsigned 64-bit integers and doubles alike, so that they compare in one way.
    long double FNumber = 0;
    QString FText;
};
