#pragma once

#include "widgets/uVTDataManager.h"
#include "widgets/uVTDataModel.h"

#include "uGuiTools.h"
#include "uTestLoop.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QVBoxLayout>

#include <gtest/gtest.h>

/// A shown tree whose model is watched for mistakes all the time.
class TVTData : public testing::Test
{
protected:
    TVTData()
    {
        auto *layout = new QVBoxLayout(&Window);
        layout->addWidget(View);
        Window.resize(240, 300);
        TGuiTools::Show(&Window);
    }

    TVTDataItem *Add(TVTDataList *list, const QString &id, const QVariant &sortValue = {})
    {
        return list->Add(id, nullptr, {}, {id}, {sortValue});
    }

    /// One update cycle that leaves exactly these root nodes.
    void Fill(const QStringList &ids)
    {
        const TVTDataUpdate update(&Manager);
        for (const QString &id : ids)
            Add(Manager.DataList(), id);
    }

    /// The captions as the view has them, without regard to expansion.
    QStringList Shown(const QModelIndex &parent = {}) const
    {
        QStringList shown;
        for (int row = 0; row < Manager.Model()->rowCount(parent); ++row)
            shown << Manager.Model()->index(row, 0, parent).data().toString();
        return shown;
    }

    QStringList ShownBelow(const QString &id) const
    {
        return Shown(Manager.Model()->IndexOf(Manager.FindNode(id)));
    }

    QString FocusedId() const
    {
        const TVTDataItem *item = Manager.FocusedItem();
        return item ? item->Id() : QString();
    }

    int TopOf(const QString &id) const
    {
        return View->visualRect(Manager.Model()->IndexOf(Manager.FindNode(id))).top();
    }

    QWidget Window;
    TVTTreeView *View = new TVTTreeView(&Window, "lvTree");
    TVTDataManager Manager{View, &Window};
    QAbstractItemModelTester Tester{Manager.Model(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal};
};

/// Notes which signals a manager raises, each with the id of its node.
class TVTSignals
{
public:
    explicit TVTSignals(TVTDataManager &manager)
    {
        const auto note = [&](auto signal, const char *name) {
            QObject::connect(&manager, signal, &FContext, [this, name](TVTDataItem *item) {
                Raised << QStringLiteral("%1 %2").arg(QLatin1String(name), item ? item->Id() : "-");
            });
        };
        note(&TVTDataManager::OnFocusChanged, "focus");
        note(&TVTDataManager::OnDoubleClick, "double");
        note(&TVTDataManager::OnEnterKey, "enter");
        note(&TVTDataManager::OnDeleteKey, "delete");
        note(&TVTDataManager::OnInsertKey, "insert");
        note(&TVTDataManager::OnRenameKey, "rename");
        note(&TVTDataManager::OnExpanded, "expanded");
        note(&TVTDataManager::OnCollapsed, "collapsed");
        note(&TVTDataManager::OnEditCanceled, "canceled");
        QObject::connect(&manager, &TVTDataManager::OnNewText, &FContext,
                         [this](TVTDataItem *item, const QString &text) {
                             Raised << "text " + item->Id() + " " + text;
                         });
    }

    QStringList Raised;

private:
    QObject FContext;
};
