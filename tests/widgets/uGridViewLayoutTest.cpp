#include "uGridViewSample.h"
#include "uGuiTools.h"
#include "uTestLoop.h"
#include "widgets/uLayoutStore.h"

#include <QSplitter>
#include <gtest/gtest.h>

namespace {

/// What one window wrote the next one reads.
class TLayout : public testing::Test
{
protected:
    TLayout() { TLayoutStore::Install(nullptr); } // an empty store in memory

    struct TGrid
    {
        TGrid()
        {
            View.setModel(&Model);
            View.RememberLayout("cities");
            Model.SetValues(Cities());
            View.resize(800, 300);
            TGuiTools::Show(&View);
        }
        /// As the mouse does: from the middle of a section, or from its right border.
        void Drag(int column, bool isBorder, int distance)
        {
            QHeaderView *header = View.header();
            const int width = header->sectionSize(column);
            const QPoint from(header->sectionViewportPosition(column) +
                                  (isBorder ? width - 1 : width / 2),
                              header->height() / 2);
            TGuiTools::Drag(header->viewport(), from, from + QPoint(distance, 0));
            TTestLoop::Settle();
        }
        TGridModel<TCity> Model{CityColumns()};
        TGridView View;
    };
};

TEST_F(TLayout, RemembersWidthsAndOrderOfColumns)
{
    int width = 0;
    {
        TGrid grid;
        EXPECT_TRUE(TLayoutStore::Read("cities").isEmpty()) << "the program chose those widths";
        grid.Drag(1, false, 0);
        EXPECT_EQ(grid.View.header()->sortIndicatorSection(), 1);
        EXPECT_TRUE(TLayoutStore::Read("cities").isEmpty()) << "a click only sorts";
        grid.Drag(1, true, 70);
        grid.Drag(0, false, 2 * grid.View.columnWidth(0) + 70);
        ASSERT_NE(grid.View.header()->visualIndex(0), 0);
        width = grid.View.columnWidth(1);
    }
    TGrid grid;
    EXPECT_NEAR(grid.View.columnWidth(1), width, 1);
    EXPECT_EQ(grid.View.header()->visualIndex(1), 0);
}

TEST_F(TLayout, LayoutsOfOtherColumnsAndBrokenOnesAreLeftAside)
{
    const TGrid plain;
    const int width = plain.View.columnWidth(0);
    for (const char *layout :
         {"0:9 1:9 2:9", "0:9 1:9 2:9 2:9", "0:9 1:9 2:9 3:-1", "x", "0:9 1:9 2:9 4:9"}) {
        TLayoutStore::Write("cities", layout);
        const TGrid grid;
        EXPECT_EQ(grid.View.columnWidth(0), width) << layout;
    }
}

TEST_F(TLayout, RemembersSplittersAndWindows)
{
    QList<int> sizes;
    QRect geometry;
    for (const bool isFirst : {true, false}) {
        QSplitter window;
        window.addWidget(new QWidget);
        window.addWidget(new QWidget);
        window.resize(400, 200);
        TLayoutStore::Remember(&window, "parts");
        TLayoutStore::Remember(static_cast<QWidget *>(&window), "window");
        TGuiTools::Show(&window);
        if (isFirst) {
            window.setGeometry(70, 60, 520, 230);
            TTestLoop::Settle();
            QSplitterHandle *handle = window.handle(1);
            TGuiTools::Drag(handle, handle->rect().center(), {-90, 5});
            sizes = window.sizes();
            geometry = window.geometry();
            ASSERT_NE(sizes[0], sizes[1]);
        }
        EXPECT_EQ(window.geometry().size(), geometry.size());
        EXPECT_EQ(window.sizes(), sizes);
        window.close();
    }
}

} // namespace
