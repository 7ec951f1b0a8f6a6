#include "uRelayTransport.h"

#include "core/uNetUtils.h"
#include "support/uException.h"

TRelayTransport::TLog &TRelayTransport::Log()
{
    static TLog log;
    return log;
}

TRelayTransport::TInstalled::TInstalled()
{
    Log() = {};
    TSSHTunnel::SetTransportFactory([] { return std::make_unique<TRelayTransport>(); });
}

TRelayTransport::TInstalled::~TInstalled()
{
    TSSHTunnel::SetTransportFactory(nullptr);
}

TRelayTransport::~TRelayTransport()
{
    Disconnect();
}

void TRelayTransport::Connect(const TSSHTransportSettings &settings)
{
    Log().Connects.append(settings);
    FConnected = true;
    ++Log().Connected;
}

void TRelayTransport::ForwardPort(quint16 sourcePort, const QString &destHost, quint16 destPort)
{
    Log().SourcePorts.append(sourcePort);
    Log().DestHost = destHost;
    Log().DestPort = destPort;
    QString address;
    if (!TNetUtils::TryResolveIPv4Address(destHost, address))
        throw EException("The relay does not know the destination.");
    FRelay = std::make_unique<TTcpProxy>(address, destPort, sourcePort);
}

void TRelayTransport::Disconnect()
{
    FRelay.reset();
    if (FConnected)
        --Log().Connected;
    FConnected = false;
}
