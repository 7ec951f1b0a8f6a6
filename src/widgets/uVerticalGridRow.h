#pragma once

#include "widgets/uVerticalGridEditors.h"

#include <QColor>

class QLabel;
class TVerticalGrid;

/// One row of a property grid. Made, owned and deleted by its grid.
class TVerticalRow : public QObject
{
    Q_OBJECT

public:
    using TValuesFunction = TVerticalGridEditor::TValuesFunction;

    /// Also the objectName of the row's control.
    QString Name() const { return objectName(); }
    TRowKind Kind() const { return FKind; }
    TVerticalGrid *Grid() const { return FGrid; }
    TVerticalRow *Parent() const { return FParent; }
    QString Caption() const { return FCaption; }
    void SetCaption(const QString &caption);

    /// The committed value in the type of the row's kind; nothing for a category.
    QVariant Value() const;
    /// Setting by code is not a change by the user: no event is fired, what was typed is dropped.
    void SetValue(const QVariant &value);
    QString Text() const { return Value().toString(); }
    bool IsChecked() const { return Value().toBool(); }
    qint64 Number() const { return Value().toLongLong(); }
    /// Position of a combo's text among its values (sorted ones in a sorted combo), or -1.
    int ItemIndex() const { return IndexOf(Text()); }
    int IndexOf(const QString &text) const;
    void SetItemIndex(int index);

    /// Shown in grey while the value is empty; in a fixed combo also the item that empties it.
    void SetWhenEmpty(const QString &text);
    void SetValues(const QStringList &values);
    /// Asked whenever the combo drops.
    void SetValuesFunction(const TValuesFunction &values);
    void SetRange(qint64 minimum, qint64 maximum);
    void SetButtons(const QStringList &captions);
    /// Whether other texts than the values can be typed into a combo.
    void SetEditable(bool isEditable);
    void SetReadOnly(bool isReadOnly);
    void SetHint(const QString &hint);
    /// Of caption and value; an invalid colour is that of the palette.
    void SetColor(const QColor &color);

    /// A row is seen when it and the rows it stands under are shown and not folded away.
    bool IsShown() const { return FIsShown; }
    void SetShown(bool isShown);
    bool IsExpanded() const { return FIsExpanded; }
    void SetExpanded(bool isExpanded);
    bool IsSeen() const;

    void SetFocus();
    bool IsModified() const;
    /// False when what is typed does not stand for a value.
    bool TryCommit();
    void Revert();
    /// What F2 and Enter do: edit, open, press or fold.
    void StartEdit();

Q_SIGNALS:
    /// The user gave the row another value.
    void OnChanged(TVerticalRow *row);
    void OnButton(TVerticalRow *row, const QString &caption);

private:
    friend class TVerticalGrid;

    TVerticalRow(TRowKind kind, const QString &name, const QString &caption, TVerticalRow *parent,
                 TVerticalGrid *grid, QWidget *body);
    void MakeHeader(QWidget *body);
    void MakeCells(QWidget *body);
    /// What gets the focus and the keys.
    QWidget *Control() const;
    /// The control with its buttons.
    QWidget *Cell() const;
    void Changed();
    int Level() const;
    void UpdateSeen();
    void UpdateMargins();
    QRect Geometry() const;

    const TRowKind FKind;
    TVerticalGrid *const FGrid;
    TVerticalRow *const FParent;
    QString FCaption;
    QLabel *FLabel = nullptr;               // unless a category
    TVerticalGridEditor *FEditor = nullptr; // unless a category
    QToolButton *FHeader = nullptr;         // of a category
    bool FIsShown = true;
    bool FIsExpanded = true;
};
