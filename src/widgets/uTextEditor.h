#pragma once

#include <QColor>
#include <QPoint>
#include <QWidget>
#include <memory>

class QFrame;
class QsciScintilla;
class TEditorGutter;
class TEditorSearchBar;
class TTextEditorActions;
class TTextEditorControl;
class TTextEditorStyler;
class TTextEditorTrimmer;

/// A text editor with a gutter, find and replace, undo and zoom. The text comes out as it went in,
/// every character and every line end of it.
class TTextEditor : public QWidget
{
    Q_OBJECT

public:
    explicit TTextEditor(QWidget *parent = nullptr);
    ~TTextEditor() override;

    QString Text() const;
    /// Starts anew with this text: unmodified, nothing to undo, the caret at the start.
    void SetText(const QString &text);
    bool IsModified() const;
    void SetModified(bool modified);
    bool IsReadOnly() const;
    void SetReadOnly(bool readOnly);

    QString SelectedText() const;
    bool HasSelection() const;
    void SelectAll();
    /// Puts the text in the place of the selection, else at the caret, as one step of undo. Its
    /// line ends become those of the text it comes into.
    void PasteText(const QString &text);
    /// Takes away the blanks that were typed at the end of lines; for use before the text is
    /// saved. Does the same at each line that the caret leaves. What was loaded or pasted stays.
    void TrimTrailingSpaces();

    qsizetype CaretLine() const;   // counted from 0
    qsizetype CaretColumn() const; // UTF-16 units before the caret in its line
    /// Moves the caret, to the nearest place there is.
    void SetCaret(qsizetype line, qsizetype column);

    /// The caret's line up to the caret, its last thousand characters at most.
    QString LineBeforeCaret() const;
    /// Puts the text in the place of so many UTF-16 units before the caret, as one step of undo.
    void ReplaceBeforeCaret(qsizetype units, const QString &text);
    /// The place under the caret, `units` before it in its line; global.
    QPoint PointUnderCaret(qsizetype units = 0) const;
    int LineHeight() const; // pixels, of the caret's line

    bool IsGutterVisible() const;
    void SetGutterVisible(bool visible);
    void SetScrollBarsVisible(bool visible);
    void SetBorderVisible(bool visible);
    /// Whether the Tab key indents; else it goes to the next control.
    void SetTabInput(bool enabled);
    void SetActiveLineVisible(bool visible);
    /// Colour under the caret's line; an invalid colour takes that of the palette.
    void SetActiveLineColor(const QColor &color);

    void OpenSearch(bool withReplace);
    void FindNext(bool forward);

    /// The component inside, owned by the editor. Its text goes by UTF-8 positions.
    QsciScintilla *Editor() const;

Q_SIGNALS:
    /// After every change of the text, the selection or the status (modified, read-only).
    void OnChange();

protected:
    void changeEvent(QEvent *event) override;
    TTextEditorStyler &Styler() { return *FStyler; }
    TTextEditorTrimmer &Trimmer() { return *FTrimmer; }

private:
    void MakeLayout();
    qsizetype StartBeforeCaret(qsizetype units) const;
    void ConnectControl();
    void ApplyColors();
    void UpdateUi(int updated);
    void Escape(QKeyEvent *event);
    void Changed();

    QFrame *FFrame = nullptr;
    TTextEditorControl *FControl = nullptr;
    TEditorGutter *FGutter = nullptr;
    TEditorSearchBar *FSearchBar = nullptr;
    TTextEditorStyler *FStyler = nullptr;
    TTextEditorTrimmer *FTrimmer = nullptr;
    TTextEditorActions *FActions = nullptr;
    QColor FActiveLineColor;
    bool FMarkedModified = false; // by SetModified, which the component has no way for
    bool FLoading = false;
    bool FColored = false;
};

/// The editor for SQL text: highlights the MySQL dialect.
class TSqlTextEditor : public TTextEditor
{
    Q_OBJECT

public:
    explicit TSqlTextEditor(QWidget *parent = nullptr);
};
