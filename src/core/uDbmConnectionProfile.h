#pragma once

#include "core/uSSHTunnel.h"

enum TDbmConnectionProfileConnectionType { ctDirect, ctSSHTunnel };

/// How to enter the SSH server of a tunnelled connection.
struct TDbmConnectionProfileSSHSettings
{
    QString HostName;
    quint16 Port = 0;
    QString UserName;
    TSSHTunnelAuthentication Authentication = taPassword;
    QString Password;      // the account's, or the key's pass phrase
    QByteArray PrivateKey; // the key file's contents, not a path

    bool operator==(const TDbmConnectionProfileSSHSettings &) const = default;
};

/// Where a server is and how to reach it. Copied whole, never shared.
struct TDbmConnectionProfile
{
    TDbmConnectionProfileConnectionType ConnectionType = ctDirect;
    TDbmConnectionProfileSSHSettings SSHSettings; // used only for ctSSHTunnel
    QString HostName;                             // seen from the SSH server when tunnelled
    int Port = 0;
    QString UserName;
    QString Password; // plain text in memory
    QString Database; // the database that the connection is bound to; empty for a whole server
    QString Charset;  // character set of the session
    bool UseCompression = false;

    /// The short text of captions and lists: "srv:3307/shop", or "ssh: gate:2222", which leaves out
    /// the MySQL host on purpose. Default ports are left out.
    QString GetDisplayString() const;
    bool operator==(const TDbmConnectionProfile &) const = default;
};
