#pragma once

#include <QObject>
#include <QSet>
#include <functional>
#include <vector>

class TTextEditorControl;

/// Gives the text its styles, piece by piece and only where they are looked at. After a change it
/// works on until the styles and states of before hold again and takes those over.
///
/// A very long line would be measured whole at each paint, half a minute for 50 MB. Of such a line
/// only the part around the caret is shown, a note below the line says so; the text is untouched.
class TTextEditorStyler : public QObject
{
    Q_OBJECT

public:
    /// Writes a style for each byte of a line (with its line end) and gives the state at its end;
    /// the state is what the line before ended with, 0 at the start of the text.
    using TLineStyler =
        std::function<int(const char *text, qsizetype length, int state, char *styles)>;

    /// The style that is not drawn. Line stylers don't use it.
    static constexpr int HiddenStyle = 31;

    explicit TTextEditorStyler(TTextEditorControl *control);

    /// Without one every character has style 0.
    void SetLineStyler(TLineStyler styler);
    /// State at the end of a line, or -1 when too much text would have to be read to know it.
    int LineState(qsizetype line);
    /// Styles that are there for the text up to a position.
    qsizetype StyledTo() const;
    bool IsLongLine(qsizetype line) const;

private:
    /// Start of a line, and the state that the line before ended with.
    struct TPlace
    {
        qsizetype Line;
        qsizetype Position;
        int State;
    };

    void StyleNeeded(int position);
    void Modified(int position, int type, int length);
    void UpdateUi(int updated);
    void Continue();
    void HideLongLines(qsizetype from, qsizetype to);
    TPlace PlaceAt(qsizetype position) const;
    void StyleUpTo(qsizetype target, qsizetype byteLimit);
    /// Styles some lines into FStyles; true when the rest is styled rightly already.
    bool StyleBlock(TPlace &place, qsizetype target);
    void StyleLine(TPlace &place);
    void HideFarPart(const TPlace &place, char *styles) const;
    void MoveWindowToCaret();
    void ScrollToCaret();
    void QueueNote(qsizetype line, bool isLong);
    void WriteNotes();

    TTextEditorControl *FControl; // parent
    TLineStyler FLineStyler;
    std::vector<char> FStyles; // of the lines just being styled
    QSet<qsizetype> FNoteLines;
    qsizetype FTarget = 0;      // styles were asked for up to here
    qsizetype FValidEnd = 0;    // once styled up to here, but for what was changed since
    qsizetype FChangedEnd = -1; // end of the last change that is not styled yet
    bool FContinuing = false;
};
