#pragma once

#include <QStringList>

class QWidget;

/// Open and save dialogs of files of one kind.
class TFileDialogs
{
public:
    struct TOptions
    {
        QString Title;            // empty: the platform's own
        QString Folder;           // where the dialog starts; empty: where the platform thinks
        QString DefaultName;      // proposed name
        QString Extension;        // without the point; added to a name that has none
        QString Filter;           // the text of the one filter; empty: "*.ext"
        QStringList Filters = {}; // whole filters, such as "All (*)", in place of the one
    };

    /// Gives false when the user cancelled. The save dialog asks before a file is overwritten.
    static bool Open(QWidget *owner, const TOptions &options, QString &fileName);
    static bool Save(QWidget *owner, const TOptions &options, QString &fileName);
};
