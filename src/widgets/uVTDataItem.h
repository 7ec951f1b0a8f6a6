#pragma once

#include "support/uSet.h"

#include <QColor>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

class TVTDataList;
class TVTDataManager;

enum TVTFontStyle { fsBold, fsItalic, fsUnderline, fsStrikeOut };
using TVTFontStyles = TSet<TVTFontStyle>;

/// One node of a keyed tree. Made and owned by a TVTDataList; changes to a shown node are seen at
/// once, within an update cycle at its end.
class TVTDataItem
{
public:
    ~TVTDataItem();
    TVTDataItem(const TVTDataItem &) = delete;
    TVTDataItem &operator=(const TVTDataItem &) = delete;

    /// Unique among the siblings, without regard to case.
    const QString &Id() const { return FId; }
    /// Gives another key. False, and nothing changes, when a sibling has it.
    bool SetId(const QString &id);

    TVTDataList *Owner() const { return FOwner; }
    TVTDataManager *Manager() const;
    /// The node above; nullptr at the root.
    TVTDataItem *Parent() const;
    /// The children; made on first use.
    TVTDataList *DataList();
    bool HasChildren() const;

    /// The object behind the node, not owned; may be none.
    void *Data() const { return FData; }
    /// T has to be the very type that was handed in: the pointer is kept without its type.
    template <class T>
    T *DataAs() const
    {
        return static_cast<T *>(FData);
    }
    void SetData(void *data) { FData = data; }

    /// Per column; outside of what was given: no value, image -1, no colour, no style.
    QVariant Value(int column) const { return FValues.value(column); }
    QVariant SortValue(int column) const { return FSortValues.value(column); }
    int ImageIndex(int column) const { return FImageIndexes.value(column, -1); }
    QColor ColumnFontColor(int column) const { return FFontColors.value(column); }
    TVTFontStyles ColumnFontStyle(int column) const { return FFontStyles.value(column); }
    /// Of the whole row, for the columns that have none of their own.
    QColor FontColor() const { return FFontColor; }
    TVTFontStyles FontStyle() const { return FFontStyle; }

    QString Caption() const { return Value(0).toString(); }
    void SetValues(const QVariantList &values);
    void SetSortValues(const QVariantList &values);
    void SetImageIndexes(const QVector<int> &indexes);
    void SetFont(const QColor &color, TVTFontStyles style);
    void SetColumnFonts(const QVector<QColor> &colors, const QVector<TVTFontStyles> &styles);

    bool IsExpanded() const;
    /// Within an update cycle this raises no OnExpanded.
    void SetExpanded(bool expanded);

    /// Marked in an update cycle and not added again yet.
    bool IsDeleted() const { return FDeleted; }

private:
    friend class TVTDataList;
    friend class TVTDataModel;
    friend class TVTDataManager;

    TVTDataItem(TVTDataList *owner, const QString &id) : FOwner(owner), FId(id) {}
    template <class T>
    void Assign(T &field, const T &value);

    TVTDataList *FOwner;
    QString FId;
    QVector<int> FImageIndexes;
    QVariantList FValues;
    QVariantList FSortValues;
    QVector<QColor> FFontColors;
    QVector<TVTFontStyles> FFontStyles;
    QColor FFontColor;
    TVTFontStyles FFontStyle;
    std::unique_ptr<TVTDataList> FDataList;
    void *FData = nullptr;
    int FRow = -1; // among the siblings that the view knows of; -1 while it does not know this one
    bool FDeleted = false;
    bool FChanged = false;        // the view has not been told yet
    bool FExpandOnReveal = false; // wanted before the view knew the node
};
