#pragma once

#include <QColor>
#include <QString>
#include <functional>
#include <type_traits>
#include <variant>
#include <vector>

/// What a cell of a list sorts by: a number, a text or nothing. Nothing comes before numbers and
/// numbers before texts, so that a column of mixed values has one order.
class TGridValue
{
public:
    TGridValue() = default;
    TGridValue(const QString &text) : FValue(text) {}
    TGridValue(const char *text) : FValue(QString::fromUtf8(text)) {}
    /// A long double holds every signed and unsigned 64-bit number exactly.
    template <typename TNumber>
    requires std::is_arithmetic_v<TNumber> || std::is_enum_v<TNumber> TGridValue(TNumber number)
        : FValue(static_cast<long double>(number))
    {}

    bool IsText() const { return std::holds_alternative<QString>(FValue); }
    bool IsNumber() const { return std::holds_alternative<long double>(FValue); }
    double Number() const { return IsNumber() ? double(std::get<long double>(FValue)) : 0; }
    QString Text() const { return IsText() ? std::get<QString>(FValue) : QString(); }

    /// Texts by code unit; below 0, 0 or above 0. No number (NaN) is before all others.
    int Compare(const TGridValue &other) const;

private:
    std::variant<std::monostate, long double, QString> FValue;
};

enum TGridColumnKind {
    gkText,
    gkPercent, // a progress bar: the sort value is the percentage, 0 to 100
    gkCheck    // a check box
};

enum TGridSort { gsNone, gsAscending, gsDescending };

enum TGridCompare {
    gcCodeUnit,
    gcLocale // texts in the order of the user's language
};

/// What a column says without looking at an item.
struct TGridColumnInfo
{
    QString Caption;
    QString Hint;
    Qt::Alignment Align;
    int Width; // in characters; 0 fits the content of the first fill
    TGridColumnKind Kind;
    TGridSort Sort;
    TGridCompare Compare;
};

/// One column of a list of items. Only Caption and Text (or Checked) have to be given; the
/// functions give plain values and touch no widget. A column can be changed by the user when it has
/// a setter.
template <typename TItem>
struct TGridColumn
{
    QString Caption;
    QString Hint;
    std::function<QString(const TItem &)> Text;
    std::function<TGridValue(const TItem &)> SortValue; // the text when it is not given
    Qt::Alignment Align = Qt::AlignLeft;
    int Width = 0; // in characters; 0 fits the content of the first fill
    TGridColumnKind Kind = gkText;
    TGridSort Sort = gsNone; // what the list is sorted by before the user chooses
    TGridCompare Compare = gcCodeUnit;
    std::function<QColor(const TItem &)> Color; // of the text; an invalid one is the palette's
    std::function<bool(const TItem &)> Checked;
    std::function<void(TItem &, bool)> SetChecked;
    /// Takes what was typed; false leaves the item as it was.
    std::function<bool(TItem &, const QString &)> SetText;
};

template <typename TItem>
using TGridColumns = std::vector<TGridColumn<TItem>>;
