#pragma once

#include "support/uDateTime.h"
#include "widgets/uCxVerticalGridUtils.h"
#include "widgets/uVerticalGrid.h"

#include <QDateTime>
#include <initializer_list>
#include <memory>
#include <type_traits>
#include <vector>

/// The field of a record that a row edits, bound by a pointer to the member. Strings, numbers,
/// booleans, dates and enumerations; an enumeration stands for the position in a combo.
template <typename TEntity>
class TPropertyField
{
public:
    TPropertyField() = default;
    template <typename TValue, typename TOwner>
    requires std::is_base_of_v<TOwner, TEntity> TPropertyField(TValue TOwner::*member)
        : Load([member](const TEntity &entity) { return ToRow(entity.*member); }),
          Store(
              [member](TEntity &entity, const QVariant &value) { FromRow(value, entity.*member); }),
          IsCode(std::is_enum_v<TValue>)
    {}

    std::function<QVariant(const TEntity &)> Load;
    std::function<void(TEntity &, const QVariant &)> Store;
    bool IsCode = false;

private:
    template <typename TValue>
    static QVariant ToRow(const TValue &value)
    {
        if constexpr (std::is_same_v<TValue, TDateTime>)
            return value.IsNull() ? QDateTime() : value.ToQDateTime();
        else if constexpr (std::is_same_v<TValue, bool> || std::is_floating_point_v<TValue>)
            return value;
        else if constexpr (std::is_integral_v<TValue> || std::is_enum_v<TValue>)
            return static_cast<qint64>(value);
        else
            return QVariant::fromValue(value);
    }
    /// Text that is no number is 0.
    template <typename TValue>
    static void FromRow(const QVariant &row, TValue &value)
    {
        if constexpr (std::is_same_v<TValue, TDateTime>)
            value = row.toDateTime().isValid() ? TDateTime::FromQDateTime(row.toDateTime())
                                               : TDateTime();
        else if constexpr (std::is_same_v<TValue, bool> || std::is_floating_point_v<TValue>)
            value = row.value<TValue>();
        else if constexpr (std::is_integral_v<TValue> || std::is_enum_v<TValue>)
            value = static_cast<TValue>(row.toLongLong());
        else
            value = row.value<TValue>();
    }
};

/// One row of a property dialog. Only Caption has to be given, and Field for what is loaded and
/// stored by itself.
template <typename TEntity>
struct TPropertyRow
{
    QString Name; // made from the caption when it is not given
    QString Caption;
    TRowKind Kind = rkText;
    TPropertyField<TEntity> Field;
    QString WhenEmpty;
    std::function<QStringList()> Values;
    /// The enumerators behind Values in the same order; without it value 0 is enumerator 0.
    std::function<QList<int>()> Codes;
    std::function<QStringList()> Buttons;
    QString Hint;
    QString Parent; // name of the row it stands indented under
    qint64 Min = std::numeric_limits<qint64>::min();
    qint64 Max = std::numeric_limits<qint64>::max();
    bool ReadOnly = false;
    bool AsTyped = false; // blanks at both ends belong to the text
    /// Asked after each load and each change of any row.
    std::function<bool(const TVerticalGrid &)> Shown;
    std::function<void(TVerticalRow &)> Changed;
    std::function<void(TVerticalRow &, const QString &)> Pressed; // caption of the button
};

/// A property dialog as a table of rows: builds the rows of a grid, loads and stores a record.
/// Rows behind an rkCategory belong to it, up to the next one or an rkCategoryEnd.
template <typename TEntity>
class TPropertyRows
{
public:
    using TRow = TPropertyRow<TEntity>;

    TPropertyRows(std::initializer_list<TRow> rows)
        : FRows(std::make_shared<const std::vector<TRow>>(rows))
    {}

    /// Adds the rows. The table may go before the grid.
    void Build(TVerticalGrid &grid) const
    {
        TVerticalRow *category = nullptr;
        for (const TRow &row : *FRows) {
            if (row.Kind == rkCategory || row.Kind == rkCategoryEnd)
                category = nullptr;
            if (row.Kind == rkCategoryEnd)
                continue;
            TVerticalRow *parent = row.Parent.isEmpty() ? category : grid.Row(row.Parent);
            TVerticalRow *made = grid.Add(row.Kind, NameOf(row), row.Caption, parent);
            Prepare(row, *made);
            if (row.Kind == rkCategory)
                category = made;
        }
        QObject::connect(&grid, &TVerticalGrid::OnRowChanged, &grid,
                         [rows = *this, &grid] { rows.UpdateShown(grid); });
        UpdateShown(grid);
    }

    void Load(TVerticalGrid &grid, const TEntity &entity) const
    {
        for (const TRow &row : *FRows) {
            if (!row.Field.Load)
                continue;
            const QVariant value = row.Field.Load(entity);
            if (row.Field.IsCode)
                TCxVerticalGridUtils::SetRowComboxBoxItemIndex(GridRow(grid, row),
                                                               IndexOfCode(row, value.toInt()));
            else
                GridRow(grid, row).SetValue(value);
        }
        UpdateShown(grid);
    }

    /// Commits what is being typed, then stores all rows, the hidden ones too. Texts are trimmed
    /// unless the row says otherwise, passwords never. Throws EConvertError, with the entity
    /// untouched, as CommitEdit does.
    void Store(TVerticalGrid &grid, TEntity &entity) const
    {
        grid.CommitEdit();
        for (const TRow &row : *FRows)
            if (row.Field.Store)
                StoreRow(row, GridRow(grid, row), entity);
    }

    /// Shows and hides the rows that have a condition; after values were set by code.
    void UpdateShown(TVerticalGrid &grid) const
    {
        for (const TRow &row : *FRows)
            if (row.Shown)
                GridRow(grid, row).SetShown(row.Shown(grid));
    }

    static QString NameOf(const TRow &row)
    {
        return row.Name.isEmpty() ? TVerticalGrid::NameOf(row.Caption) : row.Name;
    }

private:
    static TVerticalRow &GridRow(const TVerticalGrid &grid, const TRow &row)
    {
        return *grid.Row(NameOf(row));
    }

    static void Prepare(const TRow &row, TVerticalRow &made)
    {
        made.SetWhenEmpty(row.WhenEmpty);
        made.SetRange(row.Min, row.Max);
        if (row.Values)
            made.SetValuesFunction(row.Values);
        if (row.Buttons)
            made.SetButtons(row.Buttons());
        if (!row.Hint.isEmpty())
            made.SetHint(row.Hint);
        if (row.ReadOnly)
            made.SetReadOnly(true);
        if (row.Changed)
            QObject::connect(&made, &TVerticalRow::OnChanged, &made,
                             [event = row.Changed](TVerticalRow *sender) { event(*sender); });
        if (row.Pressed)
            QObject::connect(&made, &TVerticalRow::OnButton, &made,
                             [event = row.Pressed](TVerticalRow *sender, const QString &caption) {
                                 event(*sender, caption);
                             });
    }

    static int IndexOfCode(const TRow &row, int code)
    {
        return row.Codes ? int(row.Codes().indexOf(code)) : code;
    }

    static void StoreRow(const TRow &row, TVerticalRow &from, TEntity &entity)
    {
        if (row.Field.IsCode) {
            // A code that the list does not know shows nothing and stays what it was.
            if (const int index = TCxVerticalGridUtils::GetRowComboBoxItemIndex(from); index >= 0)
                row.Field.Store(entity, row.Codes ? row.Codes().value(index) : index);
            return;
        }
        QVariant value = from.Value();
        if (value.typeId() == QMetaType::QString && row.Kind != rkMasked && !row.AsTyped)
            value = value.toString().trimmed();
        row.Field.Store(entity, value);
    }

    std::shared_ptr<const std::vector<TRow>> FRows;
};
