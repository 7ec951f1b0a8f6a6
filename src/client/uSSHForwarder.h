#pragma once

#include <QString>
#include <atomic>
#include <libssh/libssh.h>
#include <memory>
#include <thread>

struct TSSHSessionDeleter
{
    void operator()(ssh_session session) const
    {
        ssh_disconnect(session);
        ssh_free(session);
    }
};
using TSSHSessionPtr = std::unique_ptr<ssh_session_struct, TSSHSessionDeleter>;

class TSSHForwardLoop;

/// Serves one local port on a thread of its own: each connection to it is a channel to the
/// destination. Several connections at once; what one side does not take waits in bounded buffers,
/// so that the other side is held back; each direction closes by itself.
class TSSHForwarder
{
public:
    /// The session is not owned and belongs to the thread until this goes. The name is resolved by
    /// the SSH server. Raises EException when the port cannot be served.
    TSSHForwarder(ssh_session session, quint16 sourcePort, const QString &destHost,
                  quint16 destPort);
    ~TSSHForwarder(); // ends all connections and waits for the thread
    TSSHForwarder(const TSSHForwarder &) = delete;
    TSSHForwarder &operator=(const TSSHForwarder &) = delete;

    /// False once the SSH server is gone. Any thread.
    bool Serving() const { return FServing; }

private:
    std::atomic<bool> FServing{true};
    std::unique_ptr<TSSHForwardLoop> FLoop;
    std::thread FThread;
};
