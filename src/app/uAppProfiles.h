#pragma once

#include "core/uDbmConnectionProfile.h"

#include <QList>
#include <memory>
#include <unordered_map>

/// A stored connection profile.
class TAppProfile
{
public:
    /// A fresh identifier: a GUID with braces, 38 characters.
    static QString NewId();

    std::shared_ptr<TAppProfile> Clone() const { return std::make_shared<TAppProfile>(*this); }
    /// The alias, or else the connection profile's own text.
    QString GetDisplayString() const;

    QString Alias;
    QString Id; // never changed once made; also names the workspace's session file
    TDbmConnectionProfile ConnectionProfile;
};

using TAppProfilePtr = std::shared_ptr<TAppProfile>;

/// The user's profiles, in no order. Main thread only.
class TAppProfiles
{
public:
    /// Starts with the default profile alone. Without a name it is the user's profiles file.
    explicit TAppProfiles(const QString &fileName = QString());

    /// Takes the profiles from the file; the default profile when there are none. Raises EException
    /// with the file's path when the file cannot be read or two profiles have one id. The file is
    /// not written any more in this run then.
    void Read();
    /// The one profile that the file may hold without an id gets one: nothing of its workspace
    /// could be kept otherwise.
    void GiveMissingId();
    /// Replaces the file. Where it could not be read before, the file stays as it is, and
    /// EException is raised if the profiles were changed since.
    void Write();

    /// Raises EException when there is a profile of that id.
    void Add(const TAppProfilePtr &profile);
    /// Raises EException when there is none.
    TAppProfilePtr Get(const QString &id) const;
    QList<TAppProfilePtr> GetArray() const;
    /// Removes the profile of that id; nothing happens when there is none.
    void Remove(const TAppProfilePtr &profile);
    void Clear();
    bool IsChanged() const { return FIsChanged; } // since the last Read or Write
    const QString &FileName() const { return FFileName; }

private:
    void Insert(const TAppProfilePtr &profile);
    void ReadFile();
    void AddDefaultIfEmpty();

    QString FFileName;
    std::unordered_map<QString, TAppProfilePtr> FProfiles;
    bool FIsChanged = false;
};
