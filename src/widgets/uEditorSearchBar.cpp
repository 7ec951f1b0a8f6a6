#include "widgets/uEditorSearchBar.h"

#include "widgets/uTextEditorColors.h"
#include "widgets/uTextEditorCommands.h"
#include "widgets/uTextEditorControl.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace {

QHBoxLayout *MakeRow(QWidget *row)
{
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->setSpacing(row->fontMetrics().height() / 4);
    return layout;
}

QLineEdit *MakeEdit(QWidget *parent, const char *name, const QString &caption)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(QLatin1String(name));
    edit->setPlaceholderText(caption);
    edit->setAccessibleName(caption);
    edit->setClearButtonEnabled(true);
    edit->setMinimumWidth(edit->fontMetrics().averageCharWidth() * 16);
    return edit;
}

bool IsEnter(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

TEditorSearchBar::TEditorSearchBar(TTextEditorControl *control, QWidget *parent)
    : QWidget(parent), FControl(control), FSearch(control)
{
    setObjectName(QStringLiteral("searchBar"));
    auto *layout = new QVBoxLayout(this);
    const int space = fontMetrics().height() / 4;
    layout->setContentsMargins(space, space, space, space);
    layout->setSpacing(space);
    MakeFindRow();
    MakeReplaceRow();
    hide();
}

void TEditorSearchBar::MakeFindRow()
{
    auto *row = new QWidget(this);
    QHBoxLayout *layout = MakeRow(row);
    FFind = MakeEdit(row, "edFind", tr("Find"));
    FFind->installEventFilter(this);
    layout->addWidget(FFind, 1);
    FCase = MakeToggle("butCase", QStringLiteral("Aa"), tr("Match case"));
    FWord = MakeToggle("butWord", QStringLiteral("W"), tr("Whole words"));
    FRegExp = MakeToggle("butRegExp", QStringLiteral(".*"), tr("Regular expression"));
    QToolButton *previous =
        MakeButton("butFindPrev", tr("Previous"), tr("Find previous (Shift+F3)"));
    QToolButton *next = MakeButton("butFindNext", tr("Next"), tr("Find next (F3)"));
    for (QToolButton *button : {FCase, FWord, FRegExp, previous, next})
        layout->addWidget(button);
    FMessage = new QLabel(row);
    FMessage->setObjectName(QStringLiteral("lblMessage"));
    FMessage->setTextFormat(Qt::PlainText);
    layout->addWidget(FMessage, 1);
    QToolButton *close = MakeButton("butClose", QStringLiteral("×"), tr("Close (Esc)"));
    layout->addWidget(close);
    this->layout()->addWidget(row);
    connect(FFind, &QLineEdit::textEdited, this, &TEditorSearchBar::TextTyped);
    connect(previous, &QToolButton::clicked, this, [this] { FindNext(false); });
    connect(next, &QToolButton::clicked, this, [this] { FindNext(true); });
    connect(close, &QToolButton::clicked, this, &TEditorSearchBar::Close);
}

void TEditorSearchBar::MakeReplaceRow()
{
    FReplaceRow = new QWidget(this);
    FReplaceRow->setObjectName(QStringLiteral("replaceRow"));
    QHBoxLayout *layout = MakeRow(FReplaceRow);
    FReplace = MakeEdit(FReplaceRow, "edReplace", tr("Replace with"));
    FReplace->installEventFilter(this);
    layout->addWidget(FReplace, 1);
    QToolButton *replace = MakeButton("butReplace", tr("Replace"), tr("Replace and find next"));
    QToolButton *all = MakeButton("butReplaceAll", tr("Replace All"), tr("Replace all"));
    layout->addWidget(replace);
    layout->addWidget(all);
    layout->addStretch(1);
    this->layout()->addWidget(FReplaceRow);
    connect(replace, &QToolButton::clicked, this, &TEditorSearchBar::Replace);
    connect(all, &QToolButton::clicked, this, &TEditorSearchBar::ReplaceAll);
}

QToolButton *TEditorSearchBar::MakeButton(const char *name, const QString &text,
                                          const QString &hint)
{
    auto *button = new QToolButton(this);
    button->setObjectName(QLatin1String(name));
    button->setText(text);
    button->setToolTip(hint);
    button->setAccessibleName(hint);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QToolButton *TEditorSearchBar::MakeToggle(const char *name, const QString &text,
                                          const QString &hint)
{
    QToolButton *button = MakeButton(name, text, hint);
    button->setCheckable(true);
    connect(button, &QToolButton::toggled, this, &TEditorSearchBar::TextTyped);
    return button;
}

TTextEditorSearchOptions TEditorSearchBar::Options() const
{
    return {.Text = FFind->text(),
            .MatchCase = FCase->isChecked(),
            .WholeWord = FWord->isChecked(),
            .RegExp = FRegExp->isChecked()};
}

void TEditorSearchBar::Open(bool withReplace)
{
    const QString selected = TTextEditorCommands::SelectedText(*FControl);
    const bool isOneLine = !selected.contains(u'\n') && !selected.contains(u'\r') &&
                           !selected.contains(QChar::Null) && selected.size() < 1000;
    if (!selected.isEmpty() && isOneLine) {
        const QString text = FRegExp->isChecked() ? QRegularExpression::escape(selected) : selected;
        FFind->setText(text);
    }
    FReplaceRow->setVisible(withReplace && !FControl->isReadOnly());
    ShowMessage({}, false);
    show();
    FFind->setFocus(Qt::ShortcutFocusReason);
    FFind->selectAll();
}

void TEditorSearchBar::Close()
{
    hide();
    FControl->setFocus(Qt::OtherFocusReason);
}

void TEditorSearchBar::FindNext(bool forward)
{
    if (FFind->text().isEmpty())
        return Open(false);
    ShowResult(FSearch.Find(Options(), forward), forward);
}

void TEditorSearchBar::TextTyped()
{
    if (FFind->text().isEmpty() || !FSearch.IsQuick())
        return ShowMessage({}, false);
    ShowResult(FSearch.FindFromSelection(Options()), true);
}

void TEditorSearchBar::Replace()
{
    ShowResult(FSearch.Replace(Options(), FReplace->text()), true);
}

void TEditorSearchBar::ReplaceAll()
{
    const TTextEditorSearchResult result = FSearch.ReplaceAll(Options(), FReplace->text());
    if (result.Found)
        ShowMessage(tr("Replaced: %1").arg(result.Count), false);
    else
        ShowResult(result, true);
}

void TEditorSearchBar::ShowResult(const TTextEditorSearchResult &result, bool forward)
{
    if (!result.Error.isEmpty())
        return ShowMessage(result.Error, true);
    if (!result.Found)
        return ShowMessage(FFind->text().isEmpty() ? QString() : tr("Not found"), true);
    QStringList parts;
    if (result.Count > 0)
        parts += tr("%1 of %2").arg(result.Index).arg(result.Count);
    if (result.Wrapped)
        parts += forward ? tr("went on from the start") : tr("went on from the end");
    ShowMessage(parts.join(QStringLiteral(", ")), false);
}

void TEditorSearchBar::ShowMessage(const QString &text, bool isWarning)
{
    FIsWarning = isWarning;
    QPalette colors = palette();
    if (isWarning)
        colors.setColor(QPalette::WindowText, TTextEditorColors(colors).Warning());
    FMessage->setPalette(colors);
    FMessage->setText(text);
    FMessage->setToolTip(text);
    FMessage->setAccessibleName(text);
    // F3 searches with the bar closed too, and its outcome must be seen.
    if (!text.isEmpty() && !isVisible()) {
        FReplaceRow->hide();
        show();
    }
}

void TEditorSearchBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        Close();
    else
        QWidget::keyPressEvent(event);
}

bool TEditorSearchBar::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto *key = static_cast<QKeyEvent *>(event);
    if (!IsEnter(key->key()))
        return QWidget::eventFilter(watched, event);
    // Taken here, or the default button of a dialog around the editor would be pressed.
    if (watched == FReplace)
        Replace();
    else
        FindNext(!(key->modifiers() & Qt::ShiftModifier));
    return true;
}

void TEditorSearchBar::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange && FMessage)
        ShowMessage(FMessage->text(), FIsWarning);
    QWidget::changeEvent(event);
}
