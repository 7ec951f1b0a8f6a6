#include "client/uSSHClient.h"

#include "client/uSSHKey.h"
#include "support/uException.h"
#include "support/uFormat.h"

#include <sys/socket.h>

namespace {

// Types of key first: signatures of all strengths belong to the first of them. What else the
// library knows follows, so that a server without such a key is reached as well.
constexpr char HostKeyTypes[] = "rsa-sha2-512,rsa-sha2-256,ssh-rsa,ssh-dss,ssh-ed25519,"
                                "ecdsa-sha2-nistp521,ecdsa-sha2-nistp384,ecdsa-sha2-nistp256";

// The fastest on today's processors first.
constexpr char Ciphers[] = "aes128-gcm@openssh.com,aes256-gcm@openssh.com,"
                           "chacha20-poly1305@openssh.com,aes256-ctr,aes192-ctr,aes128-ctr";

template <typename T>
void SetOption(ssh_session session, ssh_options_e option, const T *value)
{
    if (ssh_options_set(session, option, value) != SSH_OK)
        throw EException(QString::fromUtf8(ssh_get_error(session)));
}

} // namespace

std::unique_ptr<TSSHTransport> NewSSHTransport()
{
    return std::make_unique<TSSHClient>();
}

QString TSSHClient::LastError() const
{
    return QString::fromUtf8(ssh_get_error(FSession.get()));
}

void TSSHClient::Connect(const TSSHTransportSettings &settings)
{
    Disconnect();
    FSession.reset(ssh_new());
    if (!FSession)
        throw EException("Out of memory.");
    try {
        SetOptions(settings);
        Open(settings);
        Authenticate(settings);
    } catch (...) {
        Disconnect();
        throw;
    }
}

void TSSHClient::SetOptions(const TSSHTransportSettings &settings)
{
    // The library would take the name of the one who runs the program.
    if (settings.UserName.isEmpty())
        throw EException("There is no user name for the SSH server.");
    const ssh_session session = FSession.get();
    const bool noConfig = false;
    const long timeout = ConnectTimeout;
    const unsigned port = settings.Port;
    SetOption(session, SSH_OPTIONS_PROCESS_CONFIG, &noConfig);
    SetOption(session, SSH_OPTIONS_HOST, settings.HostName.toUtf8().constData());
    SetOption(session, SSH_OPTIONS_PORT, &port);
    SetOption(session, SSH_OPTIONS_USER, settings.UserName.toUtf8().constData());
    SetOption(session, SSH_OPTIONS_HOSTKEYS, HostKeyTypes);
    SetOption(session, SSH_OPTIONS_CIPHERS_C_S, Ciphers);
    SetOption(session, SSH_OPTIONS_CIPHERS_S_C, Ciphers);
    SetOption(session, SSH_OPTIONS_TIMEOUT, &timeout);
}

void TSSHClient::Open(const TSSHTransportSettings &settings)
{
    if (ssh_connect(FSession.get()) != SSH_OK)
        throw EException(TFormat::Format("Cannot connect to the SSH server %s:%d. %s",
                                         {settings.HostName, settings.Port, LastError()}));
    const int on = 1;
    ::setsockopt(ssh_get_fd(FSession.get()), SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
}

void TSSHClient::Authenticate(const TSSHTransportSettings &settings)
{
    const ssh_session session = FSession.get();
    // Tells which methods the server offers; it may also let everybody in.
    if (ssh_userauth_none(session, nullptr) == SSH_AUTH_SUCCESS)
        return;
    if (settings.Authentication == taPassword) {
        if (!LogInByPassword(settings.Password.toUtf8()))
            throw EException(
                TFormat::Format("The SSH server refused the password of user \"%s\". %s",
                                {settings.UserName, LastError()}));
        return;
    }
    TSSHKeyPtr key;
    if (!settings.PrivateKey.isEmpty()) {
        key = ImportSSHKey(settings.PrivateKey, settings.PassPhrase);
        if (!key)
            throw EException("The private key cannot be read: it is damaged, of an unknown kind, "
                             "or its password is wrong.");
    }
    if (!key || ssh_userauth_publickey(session, nullptr, key.get()) != SSH_AUTH_SUCCESS)
        throw EException(TFormat::Format("The SSH server refused the key of user \"%s\". %s",
                                         {settings.UserName, LastError()}));
}

bool TSSHClient::LogInByPassword(const QByteArray &password)
{
    const ssh_session session = FSession.get();
    const int methods = ssh_userauth_list(session, nullptr);
    // A server that offers neither says so in its refusal.
    if ((methods & SSH_AUTH_METHOD_PASSWORD) || !(methods & SSH_AUTH_METHOD_INTERACTIVE)) {
        const int result = ssh_userauth_password(session, nullptr, password.constData());
        if (result == SSH_AUTH_SUCCESS)
            return true;
    }
    return (methods & SSH_AUTH_METHOD_INTERACTIVE) && LogInByQuestions(password);
}

bool TSSHClient::LogInByQuestions(const QByteArray &password)
{
    const ssh_session session = FSession.get();
    int result = ssh_userauth_kbdint(session, nullptr, nullptr);
    // One round asks, a second one may tell something; more would be other questions than ours.
    for (int round = 0; result == SSH_AUTH_INFO && round < 3; ++round) {
        const int prompts = ssh_userauth_kbdint_getnprompts(session);
        for (int i = 0; i < prompts; ++i)
            ssh_userauth_kbdint_setanswer(session, static_cast<unsigned>(i), password.constData());
        result = ssh_userauth_kbdint(session, nullptr, nullptr);
    }
    return result == SSH_AUTH_SUCCESS;
}

void TSSHClient::ForwardPort(quint16 sourcePort, const QString &destHost, quint16 destPort)
{
    FForwarder.reset(); // a forwarder of before has the session
    FForwarder = std::make_unique<TSSHForwarder>(FSession.get(), sourcePort, destHost, destPort);
}

bool TSSHClient::Forwarding() const
{
    return FForwarder && FForwarder->Serving();
}

bool TSSHClient::Connected() const
{
    if (FForwarder)
        return FForwarder->Serving();
    return FSession && ssh_is_connected(FSession.get());
}

void TSSHClient::Disconnect()
{
    FForwarder.reset();
    FSession.reset();
}
