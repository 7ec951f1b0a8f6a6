#pragma once

#include <QByteArray>
#include <QString>
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

/// The SSH-2 client. Accepts every host key; reads no configuration, known hosts or agent of the
/// user's: the profile alone decides.
std::unique_ptr<TSSHTransport> NewSSHTransport();
