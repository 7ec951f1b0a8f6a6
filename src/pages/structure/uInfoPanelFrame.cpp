#include "pages/structure/uInfoPanelFrame.h"

#include "widgets/uGridView.h"

#include <QHeaderView>
#include <QVBoxLayout>

namespace {

struct TProperty
{
    QString Caption;
    QString Value;
};

using TModel = TGridModel<TProperty>;

} // namespace

void TInfoPanelFrame::DoCreate()
{
    lvInfo = new TGridView(this);
    lvInfo->setObjectName("lvInfo");
    lvInfo->setAccessibleName("Properties");
    lvInfo->setModel(new TModel(
        {{.Caption = "Property", .Text = [](const TProperty &p) { return p.Caption; }, .Width = 28},
         {.Caption = "Value", .Text = [](const TProperty &p) { return p.Value; }, .Width = 60}},
        {}, lvInfo));
    lvInfo->RememberLayout("info");
    lvInfo->header()->setStretchLastSection(true);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(lvInfo);
    setFocusProxy(lvInfo);
}

void TInfoPanelFrame::SetCaptions(const QStringList &captions)
{
    FCaptions = captions;
}

void TInfoPanelFrame::SetValues(const QStringList &values)
{
    std::vector<TProperty> rows;
    for (int i = 0; i < FCaptions.size(); ++i)
        rows.push_back({FCaptions[i], values.value(i)});
    static_cast<TModel *>(lvInfo->model())->SetValues(std::move(rows));
}
