#include "widgets/uVerticalGridCombo.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QWheelEvent>
#include <algorithm>

TVerticalCombo::TVerticalCombo(QWidget *parent) : QComboBox(parent)
{
    setInsertPolicy(NoInsert);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(10);
    setMaxVisibleItems(20);
    setFocusPolicy(Qt::StrongFocus);
}

void TVerticalCombo::showPopup()
{
    if (FOnNeeded)
        FOnNeeded();
    QComboBox::showPopup();
}

void TVerticalCombo::keyPressEvent(QKeyEvent *event)
{
    // Typing into a closed list jumps to the item of that letter.
    if (FOnNeeded && !isEditable() && !event->text().isEmpty())
        FOnNeeded();
    QComboBox::keyPressEvent(event);
}

void TVerticalCombo::wheelEvent(QWheelEvent *event)
{
    // Scrolling through the grid must not change the rows that pass under the pointer.
    event->ignore();
}

TVerticalComboEditor::TVerticalComboEditor(bool isSorted, QWidget *parent)
    : TVerticalGridEditor(parent), FIsSorted(isSorted), FCombo(new TVerticalCombo(this))
{
    FCombo->setFrame(false);
    FCombo->SetOnNeeded([this] { Fill(); });
    AddWidget(FCombo, 1);
    SetEditable(isSorted);
    connect(FCombo, &QComboBox::activated, this, &TVerticalComboEditor::Choose);
}

void TVerticalComboEditor::SetValue(const QVariant &value)
{
    FValue = value.toString();
    ShowValue();
}

void TVerticalComboEditor::ShowValue()
{
    // A value that is not in the list is shown and kept: the list may know less than the server.
    int index = IndexOfValue();
    const bool isShownByEdit = FCombo->isEditable() || FValue.isEmpty();
    if (index < 0 && !isShownByEdit) {
        FCombo->addItem(FValue, FValue);
        index = FCombo->count() - 1;
    }
    FCombo->setCurrentIndex(index);
    if (FCombo->isEditable())
        FCombo->setEditText(FValue);
}

// An empty value is shown by the grey text, not by the item for it, unless the list has it as one
// of its own. Then null and empty are two values.
int TVerticalComboEditor::IndexOfValue() const
{
    for (int i = 0; i < FCombo->count(); ++i)
        if (const QString data = FCombo->itemData(i).toString();
            data == FValue && (!data.isEmpty() || (!data.isNull() && !FValue.isNull())))
            return i;
    return FValue.isEmpty() && !FWhenEmpty.isEmpty() ? -1 : FCombo->findData(FValue);
}

bool TVerticalComboEditor::IsModified() const
{
    return FCombo->isEditable() && FCombo->currentText() != FValue;
}

bool TVerticalComboEditor::TryCommit()
{
    if (IsModified())
        ChangeValue(FCombo->currentText());
    return true;
}

void TVerticalComboEditor::StartEdit()
{
    FCombo->showPopup();
}

void TVerticalComboEditor::SetWhenEmpty(const QString &text)
{
    FWhenEmpty = text;
    FCombo->setPlaceholderText(text);
    if (QLineEdit *edit = FCombo->lineEdit())
        edit->setPlaceholderText(text);
    Fill();
}

void TVerticalComboEditor::SetValues(const TValuesFunction &values)
{
    FValues = values;
    FCombo->clear();
    ShowValue();
}

void TVerticalComboEditor::SetEditable(bool isEditable)
{
    FCombo->setEditable(isEditable);
    if (QLineEdit *edit = FCombo->lineEdit()) {
        // Completion would put the rest of a longer item behind what was meant to be all.
        FCombo->setCompleter(nullptr);
        edit->setPlaceholderText(FWhenEmpty);
    }
    ShowValue();
}

int TVerticalComboEditor::IndexOf(const QString &text) const
{
    return int(AskValues().indexOf(text));
}

void TVerticalComboEditor::SetItemIndex(int index)
{
    const QStringList values = AskValues();
    SetValue(values.value(index));
}

QStringList TVerticalComboEditor::AskValues() const
{
    QStringList values = FValues ? FValues() : QStringList();
    if (FIsSorted)
        std::sort(values.begin(), values.end());
    return values;
}

void TVerticalComboEditor::Fill()
{
    const QStringList values = AskValues();
    const QString typed = FCombo->currentText();
    const QSignalBlocker blocker(FCombo);
    FCombo->clear();
    if (!FWhenEmpty.isEmpty() && !FCombo->isEditable())
        FCombo->addItem(FWhenEmpty, QString());
    for (const QString &value : values)
        FCombo->addItem(value, value);
    ShowValue();
    if (FCombo->isEditable())
        FCombo->setEditText(typed);
}

void TVerticalComboEditor::Choose(int index)
{
    if (index >= 0)
        ChangeValue(FCombo->itemData(index).toString());
}

void TVerticalComboEditor::ChangeValue(const QString &value)
{
    const bool isOther = value != FValue || value.isNull() != FValue.isNull();
    SetValue(value);
    if (isOther)
        Q_EMIT OnChanged();
}
