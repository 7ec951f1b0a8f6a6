#pragma once

#include "app/uAppProfiles.h"
#include "shell/uDialogFrame.h"

class TDbmManager;
class TVerticalGrid;
class TVerticalRow;

/// What the dialogs ahead of a job have in common: rows of a grid, and an OK button that can be
/// pressed when the rows that the job needs are filled. Nothing is started here.
class TJobDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TJobDialogFrame(QWidget *owner) : TDialogFrame(owner) {}

protected:
    void DoCreate() override;
    void DoGetOkButtonTitle(QString &title) const override { title = "Start"; }
    void DoPrepare() override { UpdateOkButton(); }

    virtual bool IsComplete() const = 0;
    void UpdateOkButton() { Q_EMIT OnEnableOkButton(IsComplete()); }
    /// A row whose buttons change its value; `pressed` runs in the shell's guard.
    TVerticalRow *AddButtonRow(const QString &name, const QString &caption,
                               const QStringList &buttons,
                               const std::function<void(const QString &button)> &pressed,
                               bool canType = false);
    void AddCharsetRow();
    QString Charset() const; // empty for the default
    /// A database of the dialog's manager into a row; nothing when the user cancels.
    void SelectDatabase(TDbmManager &manager, TVerticalRow *row);

    TDbmManager *FManager = nullptr; // not owned
    TVerticalGrid *vgOptions = nullptr;
    TVerticalRow *rowCharset = nullptr;
};

class TCreateSqlDumpDialogFrame : public TJobDialogFrame
{
    Q_OBJECT
public:
    explicit TCreateSqlDumpDialogFrame(QWidget *owner) : TJobDialogFrame(owner) {}
    void Initialize(TDbmManager &manager, const QString &databaseName);

    QString FResultDatabaseName, FResultFileName;
    QString FResultCharset; // empty: that of the profile
    bool FResultOnlyStructure = false;

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = "Create SQL Dump"; }
    void DoProcess() override;
    bool IsComplete() const override;

private:
    void SelectFile();

    TVerticalRow *rowDatabase = nullptr;
    TVerticalRow *rowFileName = nullptr;
    TVerticalRow *rowOnlyStructure = nullptr;
};

class TExecuteDumpDialogFrame : public TJobDialogFrame
{
    Q_OBJECT
public:
    explicit TExecuteDumpDialogFrame(QWidget *owner) : TJobDialogFrame(owner) {}
    void Initialize(TDbmManager &manager, const QString &fileName);

    QString FResultFileName;
    QString FResultDatabaseName; // empty: none is used
    QString FResultCharset;      // empty: that of the profile

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = "Execute SQL Dump"; }
    void DoProcess() override;
    bool IsComplete() const override;

private:
    void SelectFile();

    TVerticalRow *rowFileName = nullptr;
    TVerticalRow *rowDatabase = nullptr;
};

class TMigrateDatabaseDialogFrame : public TJobDialogFrame
{
    Q_OBJECT
public:
    explicit TMigrateDatabaseDialogFrame(QWidget *owner) : TJobDialogFrame(owner) {}
    void Initialize(TDbmManager &manager, const QString &databaseName);

    TDbmConnectionProfile FResultSourceProfile, FResultTargetProfile;
    QString FResultSourceDatabaseName, FResultTargetDatabaseName;
    QString FResultCharset; // empty: that of the source

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = "Migrate Database"; }
    void DoProcess() override;
    bool IsComplete() const override;

private:
    void SelectTarget();
    void SelectTargetDatabase();

    TVerticalRow *rowSource = nullptr;
    TVerticalRow *rowTargetHost = nullptr;
    TVerticalRow *rowTargetDatabase = nullptr;
    TAppProfile FTargetProfile;
    bool FHasTargetProfile = false;
};

/// A database and a name for an object in it.
class TDatabaseObjectNameDialogFrame : public TDialogFrame
{
    Q_OBJECT
public:
    explicit TDatabaseObjectNameDialogFrame(QWidget *owner) : TDialogFrame(owner) {}
    /// `action` does the work when OK is pressed; what it raises keeps the dialog open.
    void Initialize(TDbmManager &manager, const QString &title, const QString &okTitle,
                    const QString &databaseName, const QString &objectName,
                    std::function<void()> action);

    QString FResultDatabaseName, FResultObjectName;

protected:
    void DoCreate() override;
    void DoGetTitle(QString &title) const override { title = FTitle; }
    void DoGetOkButtonTitle(QString &title) const override { title = FOkTitle; }
    void DoProcess() override;

private:
    QString FTitle, FOkTitle;
    std::function<void()> FAction;
    TVerticalGrid *vgObject = nullptr;
    TVerticalRow *rowDatabase = nullptr;
    TVerticalRow *rowName = nullptr;
};
