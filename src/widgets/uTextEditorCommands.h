#pragma once

#include <QString>

class TTextEditorControl;

/// Editing commands that the component does not have.
class TTextEditorCommands
{
public:
    /// Puts the text in the place of the selection, as one step of undo. Line ends become those of
    /// the text that is there; a text of one line takes those of what comes.
    static void Paste(TTextEditorControl &control, const QString &text);
    /// Puts "-- " before the caret's line or the selected lines, or takes it away when all have it.
    static void ToggleComment(TTextEditorControl &control);
    /// Marks the bracket at the caret with its partner, or as one that has none nearby.
    static void MatchBrace(TTextEditorControl &control);
    /// Selected text; of a rectangle, its lines.
    static QString SelectedText(const TTextEditorControl &control);
    /// Makes new lines end as the first line of the text does; the system's way without one.
    static void AdoptLineEnds(TTextEditorControl &control, const QString &text);
};
