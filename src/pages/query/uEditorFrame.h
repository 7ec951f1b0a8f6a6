#pragma once

#include "shell/uBaseFrame.h"

#include <QColor>

class TTextEditor;

/// A frame around a text editor with line numbers.
class TEditorFrame : public TBaseFrame
{
    Q_OBJECT
public:
    explicit TEditorFrame(QWidget *owner);

    TTextEditor &Editor() const { return *FEditor; }
    QString Text() const;
    void SetText(const QString &text); // the editor counts as unmodified
    void PasteText(const QString &text);

Q_SIGNALS:
    /// After every change of text, selection or editor status.
    void OnChange();

protected:
    void DoCreate() override;
    virtual TTextEditor *CreateEditor();

private:
    TTextEditor *FEditor = nullptr; // child widget
};

/// Adds SQL highlighting for the MySQL dialect.
class TSqlEditorFrame : public TEditorFrame
{
    Q_OBJECT
public:
    explicit TSqlEditorFrame(QWidget *owner);
    /// Colour under the caret's line; an invalid colour takes that of the palette.
    void SetActiveLineColor(const QColor &color);

protected:
    TTextEditor *CreateEditor() override;
};
