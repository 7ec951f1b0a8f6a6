#pragma once

#include <QStringList>
#include <QWidget>

class QLineEdit;
class QPlainTextEdit;
class QToolButton;

/// How the cells of a column are edited.
enum TDataSetCellKind {
    ckLine,   // one line of text
    ckText,   // the same, and a button that makes several lines of it
    ckDate,   // a day, with a calendar
    ckMoment, // a day and a time, with a calendar for the day
    ckOne,    // a line, and the list of what a column takes
    ckSeveral // the same for several of them with commas between
};

/// What a cell is edited with: a line, or a box of several lines. F4 and Alt+Down press its button.
class TDataSetCellEditor : public QWidget
{
    Q_OBJECT

public:
    TDataSetCellEditor(TDataSetCellKind kind, const QStringList &members, QWidget *parent);

    void SetName(const QString &name); // for a screen reader
    /// Several lines from the start, for a text that has them or is very long.
    void SetText(const QString &text);
    QString Text() const;
    bool IsModified() const;
    /// A popup of the editor is open: the focus that it takes is no end of the edit.
    bool IsChoosing() const { return FIsChoosing; }
    bool HasLines() const { return FBox != nullptr; }
    /// What has the focus.
    QWidget *Control() const;
    void PressButton();

Q_SIGNALS:
    /// It has several lines now, and wants the room and the keys for them.
    void OnGrown();
    /// A choice that ends the edit.
    void OnChosen();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void MakeBox();
    void Grow();

    const TDataSetCellKind FKind;
    const QStringList FMembers;
    QString FBefore;
    QLineEdit *FLine;
    QToolButton *FButton = nullptr; // none for a plain line
    QPlainTextEdit *FBox = nullptr; // in place of the line
    bool FIsChoosing = false;
    bool FIsGrown = false;
};
