#include "widgets/uVerticalGridRow.h"

#include "widgets/uVerticalGrid.h"

#include <QLabel>
#include <QPointer>
#include <QToolButton>

namespace {

// A QLabel reads "&" as the mark of a shortcut, but captions may be names of columns.
QString LabelText(QString caption)
{
    return caption.replace(u'&', u"&&"_qs);
}

} // namespace

TVerticalRow::TVerticalRow(TRowKind kind, const QString &name, const QString &caption,
                           TVerticalRow *parent, TVerticalGrid *grid, QWidget *body)
    : QObject(grid), FKind(kind), FGrid(grid), FParent(parent), FCaption(caption)
{
    setObjectName(name);
    if (kind == rkCategory)
        MakeHeader(body);
    else
        MakeCells(body);
    Control()->setObjectName(name);
    SetCaption(caption);
}

void TVerticalRow::MakeHeader(QWidget *body)
{
    FHeader = new QToolButton(body);
    FHeader->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    FHeader->setArrowType(Qt::DownArrow);
    FHeader->setAutoRaise(true);
    FHeader->setFocusPolicy(Qt::StrongFocus);
    FHeader->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    QFont font;
    font.setBold(true);
    FHeader->setFont(font);
    connect(FHeader, &QToolButton::clicked, this, [this] { SetExpanded(!FIsExpanded); });
}

void TVerticalRow::MakeCells(QWidget *body)
{
    FLabel = new QLabel(body);
    FLabel->setTextFormat(Qt::PlainText);
    FEditor = TVerticalGridEditor::Create(FKind, body);
    FLabel->setBuddy(FEditor->Control());
    connect(FEditor, &TVerticalGridEditor::OnChanged, this, &TVerticalRow::Changed);
    connect(FEditor, &TVerticalGridEditor::OnButton, this,
            [this](const QString &caption) { Q_EMIT OnButton(this, caption); });
}

void TVerticalRow::SetCaption(const QString &caption)
{
    FCaption = caption;
    if (FLabel != nullptr)
        FLabel->setText(LabelText(caption));
    else
        FHeader->setText(LabelText(caption));
    UpdateMargins();
    Control()->setAccessibleName(caption);
}

QVariant TVerticalRow::Value() const
{
    return FEditor != nullptr ? FEditor->Value() : QVariant();
}

void TVerticalRow::SetValue(const QVariant &value)
{
    if (FEditor != nullptr)
        FEditor->SetValue(value);
}

int TVerticalRow::IndexOf(const QString &text) const
{
    return FEditor != nullptr ? FEditor->IndexOf(text) : -1;
}

void TVerticalRow::SetItemIndex(int index)
{
    if (FEditor != nullptr)
        FEditor->SetItemIndex(index);
}

void TVerticalRow::SetWhenEmpty(const QString &text)
{
    if (FEditor != nullptr)
        FEditor->SetWhenEmpty(text);
}

void TVerticalRow::SetValues(const QStringList &values)
{
    SetValuesFunction([values] { return values; });
}

void TVerticalRow::SetValuesFunction(const TValuesFunction &values)
{
    if (FEditor != nullptr)
        FEditor->SetValues(values);
}

void TVerticalRow::SetRange(qint64 minimum, qint64 maximum)
{
    if (FEditor != nullptr)
        FEditor->SetRange(minimum, maximum);
}

void TVerticalRow::SetButtons(const QStringList &captions)
{
    if (FEditor == nullptr)
        return;
    FEditor->SetButtons(captions);
    FGrid->WatchRow(this);
}

void TVerticalRow::SetEditable(bool isEditable)
{
    if (FEditor == nullptr)
        return;
    FEditor->SetEditable(isEditable);
    FGrid->WatchRow(this);
}

void TVerticalRow::SetReadOnly(bool isReadOnly)
{
    if (FEditor != nullptr)
        FEditor->SetReadOnly(isReadOnly);
}

void TVerticalRow::SetHint(const QString &hint)
{
    Control()->setAccessibleDescription(hint);
    if (FLabel != nullptr)
        FLabel->setToolTip(hint);
    else
        FHeader->setToolTip(hint);
}

void TVerticalRow::SetColor(const QColor &color)
{
    if (FEditor == nullptr)
        return;
    QPalette palette; // what is not set in it stays that of the parent
    if (color.isValid())
        palette.setColor(QPalette::WindowText, color);
    FLabel->setPalette(palette);
    FEditor->SetColor(color);
}

void TVerticalRow::SetShown(bool isShown)
{
    if (FIsShown == isShown)
        return;
    FIsShown = isShown;
    FGrid->RowsChanged();
}

void TVerticalRow::SetExpanded(bool isExpanded)
{
    if (FIsExpanded == isExpanded)
        return;
    FIsExpanded = isExpanded;
    if (FHeader != nullptr)
        FHeader->setArrowType(isExpanded ? Qt::DownArrow : Qt::RightArrow);
    FGrid->RowsChanged();
}

bool TVerticalRow::IsSeen() const
{
    if (!FIsShown)
        return false;
    return FParent == nullptr || (FParent->IsSeen() && FParent->IsExpanded());
}

void TVerticalRow::SetFocus()
{
    // The reason makes a line select its text, so that typing replaces it.
    Control()->setFocus(Qt::TabFocusReason);
}

bool TVerticalRow::IsModified() const
{
    return FEditor != nullptr && FEditor->IsModified();
}

bool TVerticalRow::TryCommit()
{
    return FEditor == nullptr || FEditor->TryCommit();
}

void TVerticalRow::Revert()
{
    if (FEditor != nullptr)
        FEditor->Revert();
}

void TVerticalRow::StartEdit()
{
    if (FEditor != nullptr)
        FEditor->StartEdit();
    else
        SetExpanded(!FIsExpanded);
}

QWidget *TVerticalRow::Control() const
{
    return FEditor != nullptr ? FEditor->Control() : static_cast<QWidget *>(FHeader);
}

QWidget *TVerticalRow::Cell() const
{
    return FEditor != nullptr ? FEditor : static_cast<QWidget *>(FHeader);
}

void TVerticalRow::Changed()
{
    const QPointer<TVerticalRow> self = this; // the event may clear the grid
    Q_EMIT OnChanged(this);
    if (self != nullptr)
        Q_EMIT FGrid->OnRowChanged(this);
}

int TVerticalRow::Level() const
{
    return FParent == nullptr ? 0 : FParent->Level() + 1;
}

void TVerticalRow::UpdateSeen()
{
    if (FHeader != nullptr)
        return FHeader->setVisible(IsSeen());
    FLabel->setVisible(IsSeen());
    FEditor->setVisible(IsSeen());
}

void TVerticalRow::UpdateMargins()
{
    if (FLabel == nullptr)
        return;
    const int unit = FLabel->fontMetrics().height();
    FLabel->setIndent(unit / 2 + Level() * unit);
    // Contents margins would be lost: a frame forgets those that do not fit its first size.
    FLabel->setMinimumSize(FLabel->sizeHint().width() + unit, unit * 3 / 2);
}

QRect TVerticalRow::Geometry() const
{
    if (!IsSeen())
        return {};
    return FHeader != nullptr ? FHeader->geometry() : FLabel->geometry() | FEditor->geometry();
}
