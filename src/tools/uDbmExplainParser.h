#pragma once

#include <QList>
#include <QString>

class TDataSet;

/// One row of a statement's plan. All but the id is the server's text; empty for NULL.
struct TDbmExplainItem
{
    int Id = 0;
    QString SelectType;
    QString Table;
    QString JoinType;
    QString PossibleKeys;
    QString Key;
    QString KeyLen;
    QString RefColumns;
    QString Rows;
    QString Extra;
};

/// Turns the rows of an EXPLAIN into items.
class TDbmExplainParser
{
public:
    /// One item per row, in row order. A column that the server does not send gives 0 or an empty
    /// text.
    static QList<TDbmExplainItem> Parse(TDataSet &dataset);
};
