#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>

enum TSSHTunnelAuthentication { taPassword, taPublicKey, taPublicKeyWithPassword };

/// What a transport needs to reach and enter an SSH server.
struct TSSHTransportSettings
{
    QString HostName;
    quint16 Port = 0;
    QString UserName;
    TSSHTunnelAuthentication Authentication = taPassword;
    QString Password;      // of the account; empty in the two key modes
    QByteArray PrivateKey; // the key file's contents; may be empty, then the server refuses
    QString PassPhrase;    // of the key; empty but for taPublicKeyWithPassword
};

/// An SSH client with one forwarded local port. Failures raise EException.
class TSSHTransport
{
public:
    virtual ~TSSHTransport() = default;
    virtual void Connect(const TSSHTransportSettings &settings) = 0;
    /// Serves 127.0.0.1:sourcePort on threads of its own until Disconnect. The destination's name
    /// is resolved by the SSH server.
    virtual void ForwardPort(quint16 sourcePort, const QString &destHost, quint16 destPort) = 0;
    /// Whether ports are being forwarded.
    virtual bool Forwarding() const = 0;
    /// Ends the forwarding and the session. Does nothing when already down; never raises.
    virtual void Disconnect() = 0;
    /// False also when the SSH server has gone away meanwhile.
    virtual bool Connected() const = 0;
};

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

    /// Who makes the transport of every tunnel opened from now on. Without one, Open raises. Set at
    /// program start, before there is a second thread.
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
