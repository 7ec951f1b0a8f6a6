#include "pages/query/uQueryLogFrame.h"

#include "core/uDbmCommandLog.h"
#include "support/uFormat.h"
#include "widgets/uGridView.h"

#include <QHeaderView>
#include <QLabel>
#include <QStatusBar>
#include <QVBoxLayout>

namespace {

struct TRow
{
    int Num;
    TDbmCommandLogItem Item;
    double Percent;
};

// The run's log and the log of the workspace write an error's status in two ways; both are settled.
QString StatusText(const TDbmCommandLogItem &item)
{
    return item.IsError() ? TFormat::Format("%s (%d)", {item.ErrorName(), item.ErrorCode()})
                          : QString("OK");
}

const TGridColumns<TRow> &Columns()
{
    static const TGridColumns<TRow> columns = {
        {.Caption = "#",
         .Text = [](const TRow &row) { return QString::number(row.Num); },
         .SortValue = [](const TRow &row) { return TGridValue(row.Num); },
         .Align = Qt::AlignRight,
         .Sort = gsAscending},
        {.Caption = "Time",
         .Text = [](const TRow &row) { return row.Item.GetTimeDisplayString(); },
         .SortValue = [](const TRow &row) { return TGridValue(row.Item.Date().Days()); }},
        {.Caption = "Duration (ms)",
         .Text = [](const TRow &row) { return row.Item.GetDurationMSDisplayString(); },
         .SortValue = [](const TRow &row) { return TGridValue(row.Item.ExecTimeSec()); },
         .Align = Qt::AlignRight},
        {.Caption = "%",
         .SortValue = [](const TRow &row) { return TGridValue(row.Percent); },
         .Width = 12,
         .Kind = gkPercent},
        {.Caption = "Status", .Text = [](const TRow &row) { return StatusText(row.Item); }},
        {.Caption = "Query", .Text = [](const TRow &row) { return row.Item.Query(); }},
    };
    return columns;
}

using TModel = TGridModel<TRow>;

} // namespace

TQueryLogFrame::TQueryLogFrame(QWidget *owner) : TBaseFrame(owner) {}

void TQueryLogFrame::DoCreate()
{
    lvLog = new TGridView(this);
    lvLog->setObjectName("lvLog");
    lvLog->setAccessibleName("Log");
    lvLog->setModel(new TModel(
        Columns(), [](const TRow &row) { return QString::number(row.Num); }, lvLog));
    lvLog->RememberLayout("query.log");
    // Statements are long: they get what room there is.
    lvLog->header()->setStretchLastSection(true);
    connect(lvLog, &TGridView::OnFocusedChanged, this, &TQueryLogFrame::FocusChanged);
    auto *statusBar = new QStatusBar(this);
    statusBar->setObjectName("sbrLog");
    statusBar->setSizeGripEnabled(false);
    labError = new QLabel(statusBar);
    labError->setObjectName("labError");
    labError->setTextFormat(Qt::PlainText);
    labError->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A long message must not make the window wider.
    labError->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar->addWidget(labError, 1);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(lvLog, 1);
    column->addWidget(statusBar);
    setFocusProxy(lvLog);
}

void TQueryLogFrame::Initialize(const TDbmCommandLog *log, double execTime)
{
    FLog = log;
    FExecTime = execTime;
}

void TQueryLogFrame::Process()
{
    std::vector<TRow> rows;
    if (FLog)
        FLog->ForEach([&](const TDbmCommandLogItem &item) {
            const double percent = FExecTime == 0 ? 0 : item.ExecTimeSec() / FExecTime * 100;
            rows.push_back({static_cast<int>(rows.size()) + 1, item, percent});
        });
    static_cast<TModel *>(lvLog->model())->SetValues(std::move(rows));
    FocusChanged();
}

void TQueryLogFrame::FocusChanged()
{
    const auto row = static_cast<TModel *>(lvLog->model())->ItemAt(lvLog->FocusedRow());
    const QString message = row ? row->Item.ErrorMessage() : QString();
    labError->setText(QString(message).replace(u'\n', u' ')); // the bar has one line
    labError->setToolTip(message);
}
