#pragma once

#include "client/uSSHForwarder.h"
#include "client/uSSHTransport.h"

/// One SSH session, with one forwarded port at most. The session belongs to the thread that
/// connects; while a port is forwarded, to the thread that serves it.
class TSSHClient : public TSSHTransport
{
public:
    /// Seconds without an answer of the server after which connecting gives up.
    static constexpr long ConnectTimeout = 30;

    TSSHClient() = default;
    ~TSSHClient() override { Disconnect(); }

    void Connect(const TSSHTransportSettings &settings) override;
    void ForwardPort(quint16 sourcePort, const QString &destHost, quint16 destPort) override;
    bool Forwarding() const override;
    void Disconnect() override;
    bool Connected() const override;

private:
    void SetOptions(const TSSHTransportSettings &settings);
    void Open(const TSSHTransportSettings &settings);
    void Authenticate(const TSSHTransportSettings &settings);
    bool LogInByPassword(const QByteArray &password);
    bool LogInByQuestions(const QByteArray &password);
    QString LastError() const;

    TSSHSessionPtr FSession;
    std::unique_ptr<TSSHForwarder> FForwarder;
};
