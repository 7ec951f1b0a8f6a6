#include "widgets/uVTDataItem.h"

#include "widgets/uVTDataList.h"
#include "widgets/uVTDataManager.h"

TVTDataItem::~TVTDataItem() = default;

bool TVTDataItem::SetId(const QString &id)
{
    return FOwner->Rename(this, id);
}

TVTDataManager *TVTDataItem::Manager() const
{
    return FOwner->Manager();
}

TVTDataItem *TVTDataItem::Parent() const
{
    return FOwner->ParentItem();
}

TVTDataList *TVTDataItem::DataList()
{
    if (!FDataList)
        FDataList.reset(new TVTDataList(Manager(), this));
    return FDataList.get();
}

bool TVTDataItem::HasChildren() const
{
    return FDataList && !FDataList->IsEmpty();
}

template <class T>
void TVTDataItem::Assign(T &field, const T &value)
{
    if (field == value)
        return;
    field = value;
    FOwner->ItemChanged(this);
}

void TVTDataItem::SetValues(const QVariantList &values)
{
    Assign(FValues, values);
}

void TVTDataItem::SetSortValues(const QVariantList &values)
{
    Assign(FSortValues, values);
}

void TVTDataItem::SetImageIndexes(const QVector<int> &indexes)
{
    Assign(FImageIndexes, indexes);
}

void TVTDataItem::SetFont(const QColor &color, TVTFontStyles style)
{
    Assign(FFontColor, color);
    Assign(FFontStyle, style);
}

void TVTDataItem::SetColumnFonts(const QVector<QColor> &colors,
                                 const QVector<TVTFontStyles> &styles)
{
    Assign(FFontColors, colors);
    Assign(FFontStyles, styles);
}

bool TVTDataItem::IsExpanded() const
{
    return FRow < 0 ? FExpandOnReveal : Manager()->IsExpanded(this);
}

void TVTDataItem::SetExpanded(bool expanded)
{
    if (FRow < 0)
        FExpandOnReveal = expanded;
    else
        Manager()->SetExpanded(this, expanded);
}
