#pragma once

#include "shell/uDialogFrame.h"

#include <QDialog>
#include <functional>

class QFrame;
class QPushButton;

/// The one window in which every dialog frame runs. It is of a fixed size: the frame's, which the
/// frame sets in DoCreate, with the buttons below.
class TDialogForm : public QDialog
{
    Q_OBJECT
public:
    using TFactory = std::function<TDialogFrame *(QWidget *owner)>;
    using TResultAction = std::function<void(TDialogFrame &frame)>;

    /// Makes the frame, shows it modally centred on the owner form and, after OK, has `takeResult`
    /// read the frame. Gives whether the result was OK. `owner` may be nullptr: the active window.
    static bool Run(QWidget *owner, const TFactory &factory, const TResultAction &takeResult = {});
    template <typename TFrame>
    static bool RunFrame(QWidget *owner, const std::function<void(TFrame &)> &initialize,
                         const std::function<void(TFrame &)> &takeResult = {})
    {
        return Run(
            owner,
            [&](QWidget *parent) -> TDialogFrame * {
                TFrame *frame = TBaseFrame::New<TFrame>(parent);
                if (initialize)
                    initialize(*frame);
                return frame;
            },
            [&](TDialogFrame &frame) {
                if (takeResult)
                    takeResult(static_cast<TFrame &>(frame));
            });
    }

    ~TDialogForm() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    explicit TDialogForm(QWidget *owner);
    void SetFrame(TDialogFrame *frame);
    void ProcessAndAccept();
    void FocusFirstControl();

    TDialogFrame *FDialogFrame = nullptr; // child widget
    QFrame *panBottom = nullptr;
    QPushButton *butOK = nullptr;
    QPushButton *butCancel = nullptr;
    bool FShown = false;
};
