#include "shell/uFileDialogs.h"

#include <QDir>
#include <QFileDialog>

namespace {

QString FilterOf(const TFileDialogs::TOptions &options)
{
    const QString pattern = "*." + options.Extension;
    return options.Filter.isEmpty() ? QString("%1 (%1)").arg(pattern)
                                    : QString("%1 (%2)").arg(options.Filter, pattern);
}

bool Run(QFileDialog &dialog, const TFileDialogs::TOptions &options, QString &fileName)
{
    dialog.setObjectName("frmFile");
    if (!options.Title.isEmpty())
        dialog.setWindowTitle(options.Title);
    dialog.setNameFilters(options.Filters.isEmpty() ? QStringList{FilterOf(options)}
                                                    : options.Filters);
    dialog.setDefaultSuffix(options.Extension);
    if (!options.Folder.isEmpty() && QDir(options.Folder).exists())
        dialog.setDirectory(options.Folder);
    if (!options.DefaultName.isEmpty())
        dialog.selectFile(options.DefaultName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    fileName = dialog.selectedFiles().constFirst();
    return true;
}

} // namespace

bool TFileDialogs::Open(QWidget *owner, const TOptions &options, QString &fileName)
{
    QFileDialog dialog(owner);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    return Run(dialog, options, fileName);
}

bool TFileDialogs::Save(QWidget *owner, const TOptions &options, QString &fileName)
{
    QFileDialog dialog(owner);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    return Run(dialog, options, fileName);
}
