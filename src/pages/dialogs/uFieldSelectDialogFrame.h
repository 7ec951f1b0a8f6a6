#pragma once

#include "shell/uDialogFrame.h"

#include <QStringList>
#include <memory>

class TDbmFieldList;
class TGridView;

/// Lets the user choose one column of a table, or check several.
class TFieldSelectDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TFieldSelectDialogFrame(QWidget *owner);
    ~TFieldSelectDialogFrame() override;

    bool FIsSingleSelection = false; // no check boxes; a double click confirms
    QStringList FExcludedFieldNames; // not in the list
    QStringList FSelectedFieldNames; // checked, or focused, at the start

    /// Fills the list; after the fields above are set.
    void Initialize(const QString &title, TDbmFieldList &fields);
    QString GetResultFieldName() const;      // the focused one; empty for none
    QStringList GetResultFieldNames() const; // the checked ones in the order of the table

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = FTitle; }
    void DoGetOkButtonTitle(QString &title) const override { title = "Select"; }
    void DoPrepare() override { UpdateOkButton(); }

private:
    struct TItem;
    class TModel;

    void UpdateOkButton();

    QString FTitle;
    TGridView *lvFields = nullptr;
    TModel *FModel = nullptr; // of the view
    std::vector<std::shared_ptr<TItem>> FItems;
};
