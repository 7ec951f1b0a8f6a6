#pragma once

#include "widgets/uVerticalGridEditors.h"

/// A combo box whose items are asked for when they are needed: when it drops or is typed into.
class TVerticalCombo : public QComboBox
{
    Q_OBJECT

public:
    explicit TVerticalCombo(QWidget *parent);
    void SetOnNeeded(std::function<void()> event) { FOnNeeded = std::move(event); }
    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    std::function<void()> FOnNeeded;
};

/// Rows with a list of values, in the given order or sorted with free text beside them. An empty
/// value that has a text for it is an item of its own, so that it can be chosen again.
class TVerticalComboEditor : public TVerticalGridEditor
{
    Q_OBJECT

public:
    TVerticalComboEditor(bool isSorted, QWidget *parent);

    QWidget *Control() const override { return FCombo; }
    QVariant Value() const override { return FValue; }
    void SetValue(const QVariant &value) override;
    bool IsModified() const override;
    bool TryCommit() override;
    void Revert() override { SetValue(FValue); }
    void StartEdit() override;
    void SetWhenEmpty(const QString &text) override;
    void SetValues(const TValuesFunction &values) override;
    void SetEditable(bool isEditable) override;
    int IndexOf(const QString &text) const override;
    void SetItemIndex(int index) override;

private:
    QStringList AskValues() const;
    void Fill();
    void ShowValue();
    int IndexOfValue() const;
    void Choose(int index);
    void ChangeValue(const QString &value);

    const bool FIsSorted;
    TVerticalCombo *FCombo;
    TValuesFunction FValues;
    QString FWhenEmpty;
    QString FValue = QString();
};
