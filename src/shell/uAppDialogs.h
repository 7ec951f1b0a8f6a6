#pragma once

#include <QString>
#include <functional>
#include <memory>

class TAppProfile;
class TDbmManager;

/// The one place from which dialogs are opened: one operation per user intention. Each gives
/// whether the user confirmed; out arguments are set only then. Modal, main thread.
class TAppDialogs
{
public:
    /// A box with Yes and No; on Yes runs the action.
    static bool Execute(const QString &question, const std::function<void()> &action);
    /// Asks the question unless it is empty, then runs the text as a script. Gives whether it ran;
    /// raises EDacMySqlError.
    static bool ExecuteCommand(TDbmManager &manager, const QString &text, const QString &question);

    static bool OpenManagerFromProfiles(std::unique_ptr<TDbmManager> &manager, QString &profileName,
                                        QString &profileId);
    static bool OpenProfile(TAppProfile &profile);
    static bool CreateProfile(TAppProfile &profile);
    static bool UpdateProfile(const TAppProfile &profile, TAppProfile &newProfile);

    static bool OpenSqlFile(QString &fileName);
    static void About();
    static bool SelectDatabase(TDbmManager &manager, QString &name);
    static bool SelectCharset(TDbmManager &manager, QString &name);
};
