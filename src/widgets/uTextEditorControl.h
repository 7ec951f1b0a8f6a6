#pragma once

#include "widgets/uTextEditorQsci.h"

#include <QByteArrayView>

/// The component under an editor, with the keys left to it that belong to editing. What is read and
/// written here goes by bytes with a length, since the component's own text calls end at a NUL.
class TTextEditorControl : public QsciScintilla
{
    Q_OBJECT

public:
    /// Bytes to each side of the caret that are always shown, however long its line is.
    static constexpr qsizetype ShownAtCaret = 1024;

    explicit TTextEditorControl(QWidget *parent = nullptr);

    long Send(unsigned int message, qsizetype wParam = 0, qsizetype lParam = 0) const;
    long Send(unsigned int message, qsizetype wParam, const char *lParam) const;

    /// Number of bytes of the text.
    qsizetype Size() const { return Send(SCI_GETLENGTH); }
    /// Bytes of the buffer from one position to another; valid until the next change.
    QByteArrayView Range(qsizetype from, qsizetype to) const;
    /// Bytes of one line without its line end; valid until the next change.
    QByteArrayView LineRange(qsizetype line) const;
    /// Puts the bytes in the place of a range, as one change.
    void ReplaceRange(qsizetype from, qsizetype to, const QByteArray &bytes);

    qsizetype LineOf(qsizetype position) const { return Send(SCI_LINEFROMPOSITION, position); }
    qsizetype LineStart(qsizetype line) const { return Send(SCI_POSITIONFROMLINE, line); }
    qsizetype LineEnd(qsizetype line) const { return Send(SCI_GETLINEENDPOSITION, line); }
    qsizetype CaretPosition() const { return Send(SCI_GETCURRENTPOS); }

    // As the component's own commands, but pasting keeps NULs, and text that a long line hides is
    // taken away with the rest of the selection, which the component refuses.
    void Cut();
    void Paste();
    void DeleteSelection();

    /// Whether the Tab key indents; else it moves the focus.
    void SetTabInput(bool enabled) { FTabInput = enabled; }

Q_SIGNALS:
    void OnMenu(const QPoint &globalPosition);
    /// The Escape key, when no list or tip of the component is there to close.
    void OnEscape(QKeyEvent *event);
    /// A line was just ended by the Enter key; changes made here undo together with it.
    void OnNewLine();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    QByteArray fromMimeData(const QMimeData *source, bool &rectangular) const override;
    QMimeData *toMimeData(const QByteArray &text, bool rectangular) const override;

private:
    void LimitKeys();
    void SetOptions();
    bool HasPopup() const;
    void Edit(QKeyEvent *event);
    bool DeleteLongSelection();
    QsciCommand *CommandOf(const QKeyEvent *event) const;

    bool FTabInput = true;
};
