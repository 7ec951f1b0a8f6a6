#pragma once

#include "widgets/uGridModel.h"
#include "widgets/uGridView.h"

/// A list of cities for the tests of the list grid.
struct TCity
{
    QString Name;
    qint64 People = 0;
    double Share = 0;
    bool IsCapital = false;
};

inline TGridColumns<TCity> CityColumns()
{
    return {
        {.Caption = "Name",
         .Text = [](const TCity &city) { return city.Name; },
         .SetText =
             [](TCity &city, const QString &text) {
                 if (text.isEmpty())
                     return false;
                 city.Name = text;
                 return true;
             }},
        {.Caption = "PPL",
         .Hint = "People",
         .Text = [](const TCity &city) { return QString::number(city.People); },
         .SortValue = [](const TCity &city) { return city.People; },
         .Align = Qt::AlignRight},
        {.Caption = "%",
         .SortValue = [](const TCity &city) { return city.Share; },
         .Kind = gkPercent},
        {.Caption = "Capital",
         .Kind = gkCheck,
         .Checked = [](const TCity &city) { return city.IsCapital; },
         .SetChecked = [](TCity &city, bool checked) { city.IsCapital = checked; }},
    };
}

inline std::vector<TCity> Cities()
{
    return {{"Kiel", 9, 1, false},
            {"bern", 10, 60.26, true},
            {"Ähtäri", 9, 0, false},
            {"Rome", 2800, 100, true}};
}
