#pragma once

#include "widgets/uTextEditorSearch.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QToolButton;
class TTextEditorControl;

/// The bar below an editor for find and replace. Hidden until it is asked for.
class TEditorSearchBar : public QWidget
{
    Q_OBJECT

public:
    TEditorSearchBar(TTextEditorControl *control, QWidget *parent);

    /// Shows the bar with the selected text, when it is of one line, as what is searched.
    void Open(bool withReplace);
    void Close();
    /// Opens the bar when nothing has been searched yet.
    void FindNext(bool forward);
    void TextChanged() { FSearch.TextChanged(); }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void MakeFindRow();
    void MakeReplaceRow();
    QToolButton *MakeButton(const char *name, const QString &text, const QString &hint);
    QToolButton *MakeToggle(const char *name, const QString &text, const QString &hint);
    TTextEditorSearchOptions Options() const;
    void TextTyped();
    void Replace();
    void ReplaceAll();
    void ShowResult(const TTextEditorSearchResult &result, bool forward);
    void ShowMessage(const QString &text, bool isWarning);

    TTextEditorControl *FControl; // not owned
    TTextEditorSearch FSearch;
    QLineEdit *FFind = nullptr;
    QLineEdit *FReplace = nullptr;
    QToolButton *FCase = nullptr;
    QToolButton *FWord = nullptr;
    QToolButton *FRegExp = nullptr;
    QLabel *FMessage = nullptr;
    QWidget *FReplaceRow = nullptr;
    bool FIsWarning = false;
};
