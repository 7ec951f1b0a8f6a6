#pragma once

#include "core/uSSHTunnel.h"
#include "uTcpProxy.h"

#include <QList>

/// Stands in for an SSH session: the forwarded port is a plain TCP relay to the destination. What
/// the tunnels asked for is kept in Log() for the test.
class TRelayTransport : public TSSHTransport
{
public:
    struct TLog
    {
        QList<TSSHTransportSettings> Connects;
        QList<quint16> SourcePorts;
        QString DestHost;
        quint16 DestPort = 0;
        int Connected = 0; // sessions open now
        TRelayTransport *Last = nullptr;
    };
    static TLog &Log();

    /// Installs the relay as the transport of all tunnels, with an empty log, until its end.
    class TInstalled
    {
    public:
        TInstalled();
        ~TInstalled();
    };

    TRelayTransport() { Log().Last = this; }
    ~TRelayTransport() override;
    void Connect(const TSSHTransportSettings &settings) override;
    void ForwardPort(quint16 sourcePort, const QString &destHost, quint16 destPort) override;
    bool Forwarding() const override { return FRelay != nullptr; }
    void Disconnect() override;
    bool Connected() const override { return FConnected; }

    /// The SSH server goes away: all that was forwarded ends.
    void Break() { Disconnect(); }

private:
    bool FConnected = false;
    std::unique_ptr<TTcpProxy> FRelay;
};
