#pragma once

#include "shell/uPageFrame.h"

class QAction;
class TEditorFrame;

/// A page with a plain text, such as an exported result.
class TEditorPageFrame : public TPageFrame
{
    Q_OBJECT
public:
    explicit TEditorPageFrame(QWidget *owner);

    void Initialize(const QString &title, const QString &fileNameOrText, bool useFileName,
                    bool readOnly);
    /// The editor's text; the given one before the page has loaded.
    QString GetText() const;

protected:
    void DoCreate() override;
    QString DoGetTitle() const override { return FTitle; }
    void DoLoad() override;
    void DoActivate() override;

private:
    void Save();

    QString FTitle;
    QString FFileNameOrText;
    bool FUseFileName = false;
    bool FReadOnly = false;
    TEditorFrame *FEditorFrame = nullptr; // child widget
    QAction *actSave = nullptr;
    QWidget *panEditor = nullptr;
};
