#pragma once

#include <QWidget>
#include <utility>

/// Root of every frame: a panel that can be moved into a parent. Frames are made by New, which
/// calls DoCreate behind the constructor, and taken away by Discard or with their Qt parent;
/// DoDestroy has run by then.
class TBaseFrame : public QWidget
{
    Q_OBJECT
public:
    explicit TBaseFrame(QWidget *owner);
    ~TBaseFrame() override;

    template <typename T, typename... TArgs>
    static T *New(QWidget *owner, TArgs &&...args)
    {
        T *frame = new T(owner, std::forward<TArgs>(args)...);
        frame->Created();
        return frame;
    }
    /// Runs DoDestroy of this frame and of every frame inside it, innermost last, then deletes the
    /// widget when control is back in the event loop, since this may run inside its own event.
    static void Discard(TBaseFrame *frame);

    /// Docks the frame into the parent, filling it.
    void MoveTo(QWidget *parent);
    void Drop();
    /// Calls DoApplyStyle on this frame and every frame inside it.
    void ApplyStyle();
    /// DoDestroy, once.
    void PrepareDestroy();

protected:
    virtual void DoCreate() {}
    virtual void DoDestroy() {}
    virtual void DoApplyStyle() {}
    virtual void DoMoved() {}
    virtual void DoDropped() {}

private:
    void Created();
    bool FDestroyed = false;
};
