#include "widgets/uVerticalGridEditors.h"

#include "widgets/uStylePalette.h"
#include "widgets/uValuePopups.h"
#include "widgets/uVerticalGridCombo.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QDateTime>
#include <QRegularExpressionValidator>
#include <QShortcut>
#include <QToolButton>
#include <limits>

namespace {

const QString DateTimeFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss");

} // namespace

TVerticalGridEditor *TVerticalGridEditor::Create(TRowKind kind, QWidget *parent)
{
    switch (kind) {
    case rkNumber:
        return new TVerticalNumberEditor(parent);
    case rkCheck:
        return new TVerticalCheckEditor(parent);
    case rkFixedCombo:
    case rkCombo:
        return new TVerticalComboEditor(kind == rkCombo, parent);
    case rkMasked:
        return new TVerticalMaskedEditor(parent);
    case rkReadOnlyButtons:
        return new TVerticalButtonsEditor(parent);
    case rkDateTime:
        return new TVerticalDateTimeEditor(parent);
    case rkDayText:
    case rkDateText:
        return new TVerticalDateTextEditor(kind == rkDateText, parent);
    case rkSeveral:
        return new TVerticalSeveralEditor(parent);
    default:
        return new TVerticalTextEditor(parent);
    }
}

TVerticalGridEditor::TVerticalGridEditor(QWidget *parent)
    : QWidget(parent), FLayout(new QHBoxLayout(this))
{
    FLayout->setContentsMargins(fontMetrics().height() / 4, 0, 0, 0);
    FLayout->setSpacing(1);
}

void TVerticalGridEditor::AddWidget(QWidget *widget, int stretch)
{
    FLayout->addWidget(widget, stretch);
}

QToolButton *TVerticalGridEditor::AddButton(const QString &caption)
{
    auto *button = new QToolButton(this);
    button->setText(caption);
    button->setFocusPolicy(Qt::StrongFocus);
    FLayout->addWidget(button);
    return button;
}

void TVerticalGridEditor::SetButtons(const QStringList &captions)
{
    qDeleteAll(FButtons);
    FButtons.clear();
    for (const QString &caption : captions) {
        QToolButton *button = AddButton(caption);
        button->setObjectName(Control()->objectName() + caption.trimmed());
        button->setAccessibleName(caption.trimmed() + u' ' + Control()->accessibleName());
        connect(button, &QToolButton::clicked, this, [this, caption] { Q_EMIT OnButton(caption); });
        FButtons.append(button);
    }
}

void TVerticalGridEditor::SetColor(const QColor &color)
{
    QPalette palette; // what is not set in it stays that of the parent
    if (color.isValid())
        for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
            palette.setColor(role, color);
    Control()->setPalette(palette);
}

TVerticalTextEditor::TVerticalTextEditor(QWidget *parent)
    : TVerticalGridEditor(parent), FEdit(new QLineEdit(this))
{
    FEdit->setFrame(false);
    // By itself the control cuts what is longer than 32767 characters.
    FEdit->setMaxLength(std::numeric_limits<int>::max());
    ShowColor({});
    AddWidget(FEdit, 1);
    connect(FEdit, &QLineEdit::textEdited, this, [this] { Mark(false); });
}

void TVerticalTextEditor::SetValue(const QVariant &value)
{
    FValue = value;
    FEdit->setText(Format(value));
    FEdit->setCursorPosition(0);
    Mark(false);
}

bool TVerticalTextEditor::IsModified() const
{
    return FEdit->text() != Format(FValue);
}

bool TVerticalTextEditor::TryCommit()
{
    if (!IsModified())
        return true;
    QVariant value;
    const bool isValue = TryParse(FEdit->text(), value);
    if (isValue)
        ChangeValue(value);
    else
        Mark(true);
    return isValue;
}

void TVerticalTextEditor::ChangeValue(const QVariant &value)
{
    const bool isOther = value != FValue;
    SetValue(value);
    if (isOther)
        Q_EMIT OnChanged();
}

bool TVerticalTextEditor::TryParse(const QString &text, QVariant &value) const
{
    value = text;
    return true;
}

void TVerticalTextEditor::StartEdit()
{
    // The first time to overwrite, the second time to change what is there.
    if (FEdit->hasSelectedText() && FEdit->selectedText() == FEdit->text())
        FEdit->end(false);
    else
        FEdit->selectAll();
}

void TVerticalTextEditor::SetWhenEmpty(const QString &text)
{
    FEdit->setPlaceholderText(text);
}

void TVerticalTextEditor::SetColor(const QColor &color)
{
    FColor = color;
    ShowColor(color);
}

void TVerticalTextEditor::ShowColor(const QColor &color)
{
    QPalette palette; // what is not set in it stays that of the parent
    // The colour of the row shines through.
    palette.setColor(QPalette::Base, Qt::transparent);
    if (color.isValid())
        palette.setColor(QPalette::Text, color);
    FEdit->setPalette(palette);
}

void TVerticalTextEditor::Mark(bool isWrong)
{
    if (FIsWrong == isWrong)
        return;
    FIsWrong = isWrong;
    ShowColor(isWrong ? TAppPalette::ErrorText(palette()) : FColor);
    const QString hint = QString("\"%1\" is not a valid value.").arg(FEdit->text());
    FEdit->setToolTip(isWrong ? hint : QString());
    FEdit->setAccessibleDescription(FEdit->toolTip());
}

TVerticalMaskedEditor::TVerticalMaskedEditor(QWidget *parent) : TVerticalTextEditor(parent)
{
    Edit()->setEchoMode(QLineEdit::Password);
    QToolButton *show = AddButton("Show");
    show->setCheckable(true);
    show->setAccessibleName("Show password");
    connect(show, &QToolButton::toggled, this, [this](bool isShown) {
        Edit()->setEchoMode(isShown ? QLineEdit::Normal : QLineEdit::Password);
    });
}

TVerticalButtonsEditor::TVerticalButtonsEditor(QWidget *parent) : TVerticalTextEditor(parent)
{
    SetReadOnly(true);
}

void TVerticalButtonsEditor::StartEdit()
{
    if (auto *button = findChild<QToolButton *>())
        button->click();
}

TVerticalNumberEditor::TVerticalNumberEditor(QWidget *parent) : TVerticalTextEditor(parent)
{
    static const QRegularExpression number("-?[0-9]{0,19}");
    Edit()->setValidator(new QRegularExpressionValidator(number, Edit()));
    SetValue(qint64(0));
}

void TVerticalNumberEditor::SetRange(qint64 minimum, qint64 maximum)
{
    FMinimum = minimum;
    FMaximum = maximum;
}

bool TVerticalNumberEditor::TryParse(const QString &text, QVariant &value) const
{
    if (text.isEmpty() && HasWhenEmpty()) {
        value = QVariant();
        return true;
    }
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    value = qBound(FMinimum, number, FMaximum);
    return isNumber || text.isEmpty() || text == u'-';
}

TVerticalChooserEditor::TVerticalChooserEditor(const QString &hint, QWidget *parent)
    : TVerticalTextEditor(parent), FButton(AddButton(QStringLiteral("▾")))
{
    FButton->setObjectName("butChoose");
    FButton->setAccessibleName(hint);
    FButton->setToolTip(hint + " (F4)");
    connect(FButton, &QToolButton::clicked, this, [this] { Choose(); });
    for (const auto &key : {QKeySequence(Qt::Key_F4), QKeySequence(Qt::ALT | Qt::Key_Down)})
        connect(new QShortcut(key, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
                &QShortcut::activated, FButton, &QToolButton::click);
}

void TVerticalChooserEditor::SetReadOnly(bool isReadOnly)
{
    TVerticalTextEditor::SetReadOnly(isReadOnly);
    FButton->setEnabled(!isReadOnly);
}

TVerticalDateTimeEditor::TVerticalDateTimeEditor(QWidget *parent)
    : TVerticalChooserEditor("Calendar", parent)
{
    SetValue(QDateTime());
}

QString TVerticalDateTimeEditor::Format(const QVariant &value) const
{
    return value.toDateTime().toString(DateTimeFormat);
}

bool TVerticalDateTimeEditor::TryParse(const QString &text, QVariant &value) const
{
    const QString trimmed = text.trimmed();
    const QLocale locale;
    const QString formats[] = {
        DateTimeFormat, QStringLiteral("yyyy-MM-dd HH:mm"), QStringLiteral("yyyy-MM-dd"),
        locale.dateTimeFormat(QLocale::ShortFormat), locale.dateFormat(QLocale::ShortFormat)};
    value = QDateTime();
    if (trimmed.isEmpty())
        return true;
    for (const QString &format : formats)
        if (const QDateTime moment = QDateTime::fromString(trimmed, format); moment.isValid()) {
            value = moment;
            return true;
        }
    return false;
}

void TVerticalDateTimeEditor::Choose()
{
    const QDateTime old = Value().toDateTime();
    QDate day = old.date();
    if (TValuePopups::ChooseDate(this, day))
        ChangeValue(QDateTime(day, old.isValid() ? old.time() : QTime(0, 0)));
}

TVerticalDateTextEditor::TVerticalDateTextEditor(bool withTime, QWidget *parent)
    : TVerticalChooserEditor("Calendar", parent), FWithTime(withTime)
{}

void TVerticalDateTextEditor::Choose()
{
    const QString typed = TypedText();
    QDate day = TValuePopups::DayOf(typed);
    if (TValuePopups::ChooseDate(this, day))
        ChangeValue(TValuePopups::WithDay(typed, day, FWithTime));
}

TVerticalSeveralEditor::TVerticalSeveralEditor(QWidget *parent)
    : TVerticalChooserEditor("Values", parent)
{}

void TVerticalSeveralEditor::Choose()
{
    QString value = TypedText();
    if (FValues && TValuePopups::ChooseSeveral(this, FValues(), value))
        ChangeValue(value);
}

TVerticalCheckEditor::TVerticalCheckEditor(QWidget *parent)
    : TVerticalGridEditor(parent), FCheck(new QCheckBox(this))
{
    AddWidget(FCheck, 1);
    connect(FCheck, &QCheckBox::clicked, this, &TVerticalCheckEditor::Clicked);
}

// From the third state, which shows that there is no value, a click leads to the other two.
void TVerticalCheckEditor::Clicked()
{
    FCheck->setTristate(false);
    Q_EMIT OnChanged();
}

QWidget *TVerticalCheckEditor::Control() const
{
    return FCheck;
}

QVariant TVerticalCheckEditor::Value() const
{
    return FCheck->checkState() == Qt::PartiallyChecked ? QVariant() : FCheck->isChecked();
}

void TVerticalCheckEditor::SetValue(const QVariant &value)
{
    FCheck->setTristate(!value.isValid());
    FCheck->setCheckState(!value.isValid() ? Qt::PartiallyChecked
                          : value.toBool() ? Qt::Checked
                                           : Qt::Unchecked);
}

void TVerticalCheckEditor::StartEdit()
{
    FCheck->click();
}
