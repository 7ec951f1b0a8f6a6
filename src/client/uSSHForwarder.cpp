#include "client/uSSHForwarder.h"

#include "client/uSSHForwardLoop.h"

TSSHForwarder::TSSHForwarder(ssh_session session, quint16 sourcePort, const QString &destHost,
                             quint16 destPort)
    : FLoop(std::make_unique<TSSHForwardLoop>(session, sourcePort, destHost.toUtf8(), destPort)),
      FThread([this] {
          FLoop->Run();
          FServing = false;
          // Clients see a lost connection at once, and new ones are refused.
          FLoop->CloseAll();
      })
{}

TSSHForwarder::~TSSHForwarder()
{
    FLoop->Stop();
    FThread.join();
}
