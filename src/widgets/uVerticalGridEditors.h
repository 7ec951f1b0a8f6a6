#pragma once

#include <QComboBox>
#include <QLineEdit>
#include <QVariant>
#include <QWidget>
#include <functional>

class QBoxLayout;
class QCheckBox;
class QToolButton;

enum TRowKind {
    rkText,            // QString
    rkNumber,          // qint64; nothing while it is empty and has a text for that
    rkCheck,           // bool; nothing, which the user cannot give back, shows as a third state
    rkFixedCombo,      // QString, one of the values; null where the item for it was chosen
    rkCombo,           // QString; the values are sorted, other texts can be typed
    rkMasked,          // QString
    rkReadOnlyButtons, // QString
    rkTextButton,      // QString
    rkDateTime,        // QDateTime; invalid when empty
    rkDayText,         // QString, free text with a calendar
    rkDateText,        // the same with a time behind the day
    rkSeveral,         // QString, some of the values with commas between, or free text
    rkCategory,        // a header; following rows may belong to it
    rkCategoryEnd      // in tables of rows only: what follows belongs to no category
};

/// The value cell of one row of a property grid: a real control and buttons behind it. What is
/// being typed is not the value before it is committed.
class TVerticalGridEditor : public QWidget
{
    Q_OBJECT

public:
    using TValuesFunction = std::function<QStringList()>;

    static TVerticalGridEditor *Create(TRowKind kind, QWidget *parent);

    /// What bears the row's name and gets the focus.
    virtual QWidget *Control() const = 0;
    virtual QVariant Value() const = 0;
    virtual void SetValue(const QVariant &value) = 0;
    /// What the control shows, committed or not.
    virtual QString TypedText() const { return Value().toString(); }
    /// Something typed is not committed yet.
    virtual bool IsModified() const { return false; }
    /// Makes what was typed the value. False when it does not stand for one: then it is marked and
    /// stays as it is beside the old value.
    virtual bool TryCommit() { return true; }
    virtual void Revert() {}
    /// What F2 and Enter do in a row: edit, open or press.
    virtual void StartEdit() = 0;

    virtual void SetWhenEmpty(const QString &) {}
    /// Of the text; an invalid one is the palette's.
    virtual void SetColor(const QColor &color);
    virtual void SetReadOnly(bool isReadOnly) { setEnabled(!isReadOnly); }
    virtual void SetRange(qint64, qint64) {}
    virtual void SetValues(const TValuesFunction &) {}
    virtual void SetEditable(bool) {}
    /// Position among the values, -1 for another text or none.
    virtual int IndexOf(const QString &) const { return -1; }
    virtual void SetItemIndex(int) {}

    void SetButtons(const QStringList &captions);

Q_SIGNALS:
    /// The user gave the row another value.
    void OnChanged();
    void OnButton(const QString &caption);

protected:
    explicit TVerticalGridEditor(QWidget *parent);
    void AddWidget(QWidget *widget, int stretch);
    QToolButton *AddButton(const QString &caption);

private:
    QBoxLayout *FLayout;
    QList<QToolButton *> FButtons;
};

/// Rows that are typed in one line.
class TVerticalTextEditor : public TVerticalGridEditor
{
    Q_OBJECT

public:
    explicit TVerticalTextEditor(QWidget *parent);

    QWidget *Control() const override { return FEdit; }
    QVariant Value() const override { return FValue; }
    void SetValue(const QVariant &value) override;
    QString TypedText() const override { return FEdit->text(); }
    bool IsModified() const override;
    bool TryCommit() override;
    void Revert() override { SetValue(FValue); }
    void StartEdit() override;
    void SetWhenEmpty(const QString &text) override;
    void SetColor(const QColor &color) override;
    void SetReadOnly(bool isReadOnly) override { FEdit->setReadOnly(isReadOnly); }

protected:
    virtual QString Format(const QVariant &value) const { return value.toString(); }
    virtual bool TryParse(const QString &text, QVariant &value) const;
    QLineEdit *Edit() const { return FEdit; }
    bool HasWhenEmpty() const { return !FEdit->placeholderText().isEmpty(); }
    void ChangeValue(const QVariant &value);

private:
    void ShowColor(const QColor &color);
    void Mark(bool isWrong);

    QLineEdit *FEdit;
    QVariant FValue = QString();
    QColor FColor;
    bool FIsWrong = false;
};

class TVerticalMaskedEditor : public TVerticalTextEditor
{
    Q_OBJECT

public:
    explicit TVerticalMaskedEditor(QWidget *parent);
};

/// Read-only text whose first button is what Enter presses.
class TVerticalButtonsEditor : public TVerticalTextEditor
{
    Q_OBJECT

public:
    explicit TVerticalButtonsEditor(QWidget *parent);
    void StartEdit() override;
};

class TVerticalNumberEditor : public TVerticalTextEditor
{
    Q_OBJECT

public:
    explicit TVerticalNumberEditor(QWidget *parent);
    /// A number outside becomes the nearer end when it is committed.
    void SetRange(qint64 minimum, qint64 maximum) override;

protected:
    bool TryParse(const QString &text, QVariant &value) const override;

private:
    qint64 FMinimum = std::numeric_limits<qint64>::min();
    qint64 FMaximum = std::numeric_limits<qint64>::max();
};

/// A line with a button behind it, behind which the value can be chosen. F4 and Alt+Down press it.
class TVerticalChooserEditor : public TVerticalTextEditor
{
    Q_OBJECT

public:
    TVerticalChooserEditor(const QString &hint, QWidget *parent);
    void SetReadOnly(bool isReadOnly) override;

protected:
    virtual void Choose() = 0;

private:
    QToolButton *FButton;
};

/// Takes `yyyy-MM-dd hh:mm:ss`, shorter forms of it and those of the locale; has a calendar.
class TVerticalDateTimeEditor : public TVerticalChooserEditor
{
    Q_OBJECT

public:
    explicit TVerticalDateTimeEditor(QWidget *parent);

protected:
    QString Format(const QVariant &value) const override;
    bool TryParse(const QString &text, QVariant &value) const override;
    void Choose() override;
};

/// The text stays as it was typed: fractions, zero dates, whatever a server takes.
class TVerticalDateTextEditor : public TVerticalChooserEditor
{
    Q_OBJECT

public:
    TVerticalDateTextEditor(bool withTime, QWidget *parent);

protected:
    void Choose() override;

private:
    const bool FWithTime;
};

class TVerticalSeveralEditor : public TVerticalChooserEditor
{
    Q_OBJECT

public:
    explicit TVerticalSeveralEditor(QWidget *parent);
    void SetValues(const TValuesFunction &values) override { FValues = values; }

protected:
    void Choose() override;

private:
    TValuesFunction FValues;
};

class TVerticalCheckEditor : public TVerticalGridEditor
{
    Q_OBJECT

public:
    explicit TVerticalCheckEditor(QWidget *parent);

    QWidget *Control() const override;
    QVariant Value() const override;
    void SetValue(const QVariant &value) override;
    void StartEdit() override;

private:
    void Clicked();

    QCheckBox *FCheck;
};
