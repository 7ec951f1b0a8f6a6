#pragma once

#include "pages/structure/uPreparedTabs.h"
#include "uGuiTools.h"
#include "widgets/uGridView.h"

/// What the tabs of a page show.
class TTabTools
{
public:
    static QStringList Captions(const TPreparedTabs &tabs)
    {
        QStringList captions;
        for (int i = 0; i < tabs.count(); ++i)
            if (tabs.isTabVisible(i))
                captions += tabs.tabText(i);
        return captions;
    }
    /// Goes to the tab and gives the rows of its list, cells joined by a bar.
    static QStringList Rows(TPreparedTabs &tabs, int tab)
    {
        tabs.setCurrentIndex(tab);
        return TGuiTools::Rows(*tabs.widget(tab)->findChild<TGridView *>()->model());
    }
};
