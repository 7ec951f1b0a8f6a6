#pragma once

#include "client/uSSHTransport.h"

#include <functional>

/// Forwards a local TCP port through an SSH server to a MySQL server.
class TSSHTunnel
{
public:
    using TNotifyEvent = std::function<void(TSSHTunnel *Sender)>;
    using TTransportFactory = std::function<std::unique_ptr<TSSHTransport>()>;

    TSSHTunnel();
    ~TSSHTunnel(); // closes first
    TSSHTunnel(const TSSHTunnel &) = delete;
    TSSHTunnel &operator=(const TSSHTunnel &) = delete;

    /// Puts another transport in the place of the SSH client's, for tests of what lies above it.
    static void SetTransportFactory(TTransportFactory factory);

    QString HostName;
    quint16 Port = 0;
    QString UserName;
    TSSHTunnelAuthentication Authentication = taPassword;
    QString Password;       // the account's, or the key's pass phrase
    QByteArray PrivateKey;  // the key file's contents
    QString DestTunnelHost; // as the SSH server sees it
    quint16 DestTunnelPort = 0;

    /// Connects, then forwards the first free local port. When that fails the SSH session stays
    /// connected. What the transport raises passes unchanged.
    void Open();
    void Close();
    /// Connects and disconnects; no port is forwarded.
    void TestConnection();

    QString GetSourceTunnelHost() const;                        // always 127.0.0.1
    quint16 GetSourceTunnelPort() const { return FSourcePort; } // 0 before the first Open
    /// Whether the SSH session is connected.
    bool Active() const;
    /// Whether the session is connected and the local port leads to the destination.
    bool Forwarding() const;

    void SetOnAfterOpen(TNotifyEvent event) { FOnAfterOpen = std::move(event); }
    void SetOnAfterClose(TNotifyEvent event) { FOnAfterClose = std::move(event); }

private:
    void Connect();
    void Forward();

    std::unique_ptr<TSSHTransport> FTransport; // made by the first Open
    quint16 FSourcePort = 0;
    TNotifyEvent FOnAfterOpen;
    TNotifyEvent FOnAfterClose;
};
