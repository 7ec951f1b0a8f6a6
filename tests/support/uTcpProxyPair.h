#pragma once

#include <QByteArray>

#include <chrono>
#include <deque>
#include <poll.h>
#include <utility>

/// The two sockets of one forwarded connection. Used by the proxy's thread only.
class TTcpProxyPair
{
public:
    using TClock = std::chrono::steady_clock;
    /// Closes a socket such that the other end gets a reset instead of an orderly end.
    static void Reset(int &socket);

    explicit TTcpProxyPair(int client) : FToServer{client, -1}, FToClient{-1, client} {}

    bool IsConnected() const { return FToServer.To >= 0; }
    bool Connect(const QByteArray &host, int port);
    /// Bytes that may still go to the client before the connection is reset; -1 is no limit.
    void SetLimit(qint64 bytes) { FLimit = bytes; }

    /// What poll() is to wait for, client first.
    void Ask(pollfd (&fds)[2]) const;
    /// When the next data that are held back after now fall due.
    TClock::time_point NextDue(TClock::time_point now) const;
    /// Moves what can be moved. False when the connection is over and its sockets are closed.
    bool Move(const pollfd (&fds)[2], std::chrono::milliseconds delay);
    void Cut();

    /// Bytes moved since the last call.
    qint64 TakeBytesToServer() { return std::exchange(FToServer.Moved, 0); }
    qint64 TakeBytesToClient() { return std::exchange(FToClient.Moved, 0); }

private:
    struct TPiece
    {
        TClock::time_point Due;
        QByteArray Bytes;
    };
    struct TDirection
    {
        int From;
        int To;
        std::deque<TPiece> Pieces = {};
        bool Ended = false; // nothing more comes from the source
        bool Shut = false;  // and the target has been told
        qint64 Moved = 0;

        bool WantsRead() const { return !Ended && Pieces.size() < 64; }
        bool WantsWrite() const { return !Pieces.empty() && Pieces.front().Due <= TClock::now(); }
        bool Read(std::chrono::milliseconds delay);
        bool Write(qint64 &limit);
        void PassEnd();
    };

    TDirection FToServer;
    TDirection FToClient;
    qint64 FLimit = -1;
};
