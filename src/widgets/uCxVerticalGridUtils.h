#pragma once

#include "widgets/uVerticalGridRow.h"

/// The text of a combo row as the index of its item, and back.
class TCxVerticalGridUtils
{
public:
    /// -1 when the text is none of the items.
    static int GetRowComboBoxItemIndex(const TVerticalRow &row) { return row.ItemIndex(); }
    static int GetRowComboBoxItemIndex(const TVerticalRow &row, const QString &text)
    {
        return row.IndexOf(text);
    }
    /// An index of no item empties the row.
    static void SetRowComboxBoxItemIndex(TVerticalRow &row, int index) { row.SetItemIndex(index); }
};
