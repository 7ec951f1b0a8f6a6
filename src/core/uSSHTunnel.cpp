#include "core/uSSHTunnel.h"

#include "core/uNetUtils.h"
#include "support/uException.h"

namespace {

TSSHTunnel::TTransportFactory &TransportFactory()
{
    static TSSHTunnel::TTransportFactory factory;
    return factory;
}

std::unique_ptr<TSSHTransport> MakeTransport()
{
    return TransportFactory() ? TransportFactory()() : NewSSHTransport();
}

} // namespace

TSSHTunnel::TSSHTunnel() = default;

TSSHTunnel::~TSSHTunnel()
{
    Close();
}

void TSSHTunnel::SetTransportFactory(TTransportFactory factory)
{
    TransportFactory() = std::move(factory);
}

void TSSHTunnel::Open()
{
    Connect();
    Forward();
    if (FOnAfterOpen)
        FOnAfterOpen(this);
}

void TSSHTunnel::Close()
{
    if (FTransport)
        FTransport->Disconnect();
    if (FOnAfterClose)
        FOnAfterClose(this);
}

void TSSHTunnel::TestConnection()
{
    Connect();
    FTransport->Disconnect();
}

QString TSSHTunnel::GetSourceTunnelHost() const
{
    return QStringLiteral("127.0.0.1");
}

bool TSSHTunnel::Active() const
{
    return FTransport && FTransport->Connected();
}

bool TSSHTunnel::Forwarding() const
{
    return Active() && FTransport->Forwarding();
}

void TSSHTunnel::Connect()
{
    if (!FTransport)
        FTransport = MakeTransport();
    // A session may be left from an Open whose forwarding failed, and it knows other settings.
    FTransport->Disconnect();

    TSSHTransportSettings settings;
    settings.HostName = HostName;
    settings.Port = Port;
    settings.UserName = UserName;
    settings.Authentication = Authentication;
    if (Authentication == taPassword)
        settings.Password = Password;
    else
        settings.PrivateKey = PrivateKey;
    if (Authentication == taPublicKeyWithPassword)
        settings.PassPhrase = Password;
    FTransport->Connect(settings);
}

void TSSHTunnel::Forward()
{
    FSourcePort = TTcpPortHelper::FindFreePort(GetSourceTunnelHost());
    FTransport->ForwardPort(FSourcePort, DestTunnelHost, DestTunnelPort);
}
