#include "widgets/uVTDataSortValue.h"

#include <QDateTime>

#include <cmath>
#include <limits>

TVTDataSortValue::TVTDataSortValue(const QVariant &value)
{
    if (value.isNull())
        return;
    switch (value.typeId()) {
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
        SetMoment(value);
        break;
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        SetNumber(value);
        break;
    default:
        FRank = rkText;
        FText = value.toString();
    }
}

int TVTDataSortValue::Compare(const TVTDataSortValue &other) const
{
    if (FRank != other.FRank)
        return FRank < other.FRank ? -1 : 1;
    if (FRank != rkText)
        return FNumber < other.FNumber ? -1 : int(FNumber > other.FNumber);
    const int blind = QString::compare(FText, other.FText, Qt::CaseInsensitive);
    return blind != 0 ? blind : QString::compare(FText, other.FText);
}

void TVTDataSortValue::SetNumber(const QVariant &value)
{
    FRank = rkNumber;
    if (value.typeId() == QMetaType::ULongLong)
        FNumber = value.toULongLong();
    else if (value.typeId() == QMetaType::Double || value.typeId() == QMetaType::Float)
        FNumber = value.toDouble();
    else
        FNumber = value.toLongLong();
    // Not-a-number is neither before nor after anything, which no sort can live with.
    if (std::isnan(FNumber))
        FNumber = -std::numeric_limits<long double>::infinity();
}

void TVTDataSortValue::SetMoment(const QVariant &value)
{
    FRank = rkMoment;
    if (value.typeId() == QMetaType::QTime)
        FNumber = value.toTime().msecsSinceStartOfDay();
    else
        FNumber = value.toDateTime().toMSecsSinceEpoch();
}
