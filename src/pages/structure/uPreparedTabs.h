#pragma once

#include <QTabWidget>
#include <functional>
#include <vector>

class TBaseFrame;

/// Tabs whose frames are made at the first visit and filled only when they are seen: a visit fills
/// a frame whose tab was marked since it was filled last.
class TPreparedTabs : public QTabWidget
{
    Q_OBJECT
public:
    using TCreate = std::function<TBaseFrame *(QWidget *owner)>;
    using TFill = std::function<void()>;

    explicit TPreparedTabs(QWidget *parent);

    /// `name` is the object name of the sheet. `fill` runs after `create`.
    void AddTab(const char *name, const QString &caption, const QString &icon, TCreate create,
                TFill fill);
    /// Marks all tabs and fills the active one; raises what filling it raises.
    void Process();
    /// nullptr before the first visit.
    TBaseFrame *Frame(int index) const { return FTabs[size_t(index)].Frame; }

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct TTab
    {
        QString Caption; // without the count that a page puts behind it
        TCreate Create;
        TFill Fill;
        TBaseFrame *Frame = nullptr; // child of the sheet
        bool IsDirty = true;
    };

    void Prepare(int index);

    std::vector<TTab> FTabs;
    bool FIsProcessed = false; // before that there is nothing to show
};
