#pragma once

#include <QDialog>

class QPlainTextEdit;

/// Shows the message of a failure, modal, with caption "Korvane". The text can be selected and
/// copied; what is too long for the screen scrolls.
class TErrorBox : public QDialog
{
    Q_OBJECT

public:
    /// Details are the statement or whatever else helps to find the cause; they are folded away
    /// at first, and without any there is no button for them.
    static void Execute(QWidget *parent, const QString &message, const QString &details = {});

    TErrorBox(QWidget *parent, const QString &message, const QString &details);

    /// What the copy button puts on the clipboard.
    QString Text() const;

private:
    void MakeControls();
    QWidget *MakeMessageRow();
    QWidget *MakeButtons();
    QPlainTextEdit *MakeDetails();
    void ShowDetails(bool shown);
    void Copy() const;

    const QString FMessage;
    const QString FDetails;
    QPlainTextEdit *FDetailsView = nullptr;
};

/// A question with the answers Yes and No.
class TQuestionBox
{
public:
    /// True for Yes; closing the box is No.
    static bool Ask(QWidget *parent, const QString &question);
};
