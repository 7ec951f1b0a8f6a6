#pragma once

#include "shell/uAppDialogs.h"

#include <QObject>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;

/// Every action of the main menu, and when each is enabled and seen.
class TMainFormMenuUtils : public QObject
{
    Q_OBJECT
public:
    explicit TMainFormMenuUtils(QMainWindow &window);
    ~TMainFormMenuUtils() override;

    /// Recomputes the states of all actions and rebuilds the Window menu.
    void UpdateStates();
    /// What F5 does: nothing when the action is disabled.
    void TriggerQueryExecute();

private:
    /// When an entry of the Schema, Tools and Query menus can be used.
    enum TCondition { mcAlways, mcConnection, mcServerConnection, mcQueryPage, mcClosedQuery };
    struct TActionRow;
    struct TEntry
    {
        QAction *Action = nullptr;
        TCondition Condition = mcAlways;
        bool HasWork = false; // an entry without work yet is disabled, never a dead click
        std::optional<TAppDialogKind> Dialog = {}; // the same without this dialog

        bool IsThere() const { return HasWork && (!Dialog || TAppDialogs::Has(*Dialog)); }
    };

    static const std::vector<TActionRow> &Rows();
    void BuildMenus(QMainWindow &window);
    QMenu *AddMenu(QMainWindow &window, const QString &name, const QString &caption);
    QAction *MakeAction(QMainWindow &window, const TActionRow &row);
    void UpdateConnectionStates();
    void UpdateQueryStates();
    void RebuildWindowMenu();
    QAction *Find(const QString &name) const;

    std::vector<TEntry> FEntries;
    std::vector<QMenu *> FConnectionMenus; // seen only while a connection is open
    QMenu *FDataMenu = nullptr;            // stands on no bar
    QMenu *FWindowMenu = nullptr;
    QActionGroup *FPagesGroup;
    std::vector<QAction *> FPageEntries; // of the Window menu, with the separator above them
};
