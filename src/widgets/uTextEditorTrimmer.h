#pragma once

#include <QObject>
#include <functional>

class TTextEditorControl;

/// Takes away blanks at the end of lines, but only those that were typed here (or written by the
/// auto indent): what was loaded or pasted stays as it is. A line is trimmed when the caret leaves
/// it; blanks inside a string that goes on into the next line are text and stay.
class TTextEditorTrimmer : public QObject
{
    Q_OBJECT

public:
    /// Whether the end of a line lies inside a string, or may do so.
    using TIsInString = std::function<bool(qsizetype line)>;

    explicit TTextEditorTrimmer(TTextEditorControl *control);

    void SetIsInString(TIsInString isInString) { FIsInString = std::move(isInString); }
    /// Trims all lines, the caret's too; before the text is saved.
    void TrimAll();
    /// While set, what comes in is loaded text.
    void SetLoading(bool loading) { FLoading = loading; }

private:
    void Modified(int position, int type, const char *text, int length);
    void UpdateUi(int updated);
    void Trim(bool withCaretLine);
    void TrimLine(qsizetype line);
    qsizetype TypedTailStart(qsizetype line) const;
    bool IsTyped(qsizetype position) const;
    void Forget(qsizetype from, qsizetype to);

    TTextEditorControl *FControl; // parent
    TIsInString FIsInString;
    bool FLoading = false;
    bool FHasTyped = false;
    bool FTrimming = false;
};
