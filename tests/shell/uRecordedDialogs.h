#pragma once

#include "shell/uAppDialogs.h"

#include <QStringList>

/// Stands in for the dialogs that make and change objects while it lives: notes what each was
/// opened for and answers in the user's place.
class TRecordedDialogs
{
public:
    TRecordedDialogs()
    {
        for (int kind = adkDatabase; kind <= adkUser; ++kind)
            TAppDialogs::SetObjectDialog(
                TAppDialogKind(kind),
                [this, kind](const TAppDialogs::TObjectTask &task, QString &newName) {
                    static const char *const names[] = {"database",  "table",   "view",
                                                        "event",     "field",   "index",
                                                        "reference", "trigger", "user"};
                    Tasks += QStringList{names[kind], task.DatabaseName, task.TableName, task.Name,
                                         task.HostName}
                                 .join('|');
                    if (!Confirms)
                        return false;
                    if (Work)
                        Work(task);
                    newName = NewName;
                    return true;
                });
    }
    ~TRecordedDialogs()
    {
        for (int kind = adkDatabase; kind <= adkUser; ++kind)
            TAppDialogs::SetObjectDialog(TAppDialogKind(kind), {});
    }
    TRecordedDialogs(const TRecordedDialogs &) = delete;
    TRecordedDialogs &operator=(const TRecordedDialogs &) = delete;

    QStringList Take() { return std::exchange(Tasks, {}); }

    QStringList Tasks; // kind|database|table|name|host
    bool Confirms = true;
    QString NewName;
    std::function<void(const TAppDialogs::TObjectTask &task)> Work;
};
