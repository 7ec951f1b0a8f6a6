#pragma once

#include "support/uException.h"

/// An error of the server or of the client library, with that party's code and text.
class EMyError : public EException
{
public:
    EMyError(int errorCode, const QString &message) : EException(message), FErrorCode(errorCode) {}
    int ErrorCode() const { return FErrorCode; }

    /// Codes 2006 and 2013: the session ended under the statement.
    bool IsLostConnection() const;
    /// Whether the caller may run the failed statement once more: the session was lost, its events
    /// asked for rmReconnectExecute and no transaction was open.
    bool CanRepeat() const { return FCanRepeat; }
    void SetCanRepeat(bool value) { FCanRepeat = value; }

private:
    int FErrorCode;
    bool FCanRepeat = false;
};
