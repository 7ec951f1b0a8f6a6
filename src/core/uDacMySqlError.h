#pragma once

#include "support/uException.h"

/// Cleans the texts of server errors.
class TDacMySqlErrorFormatter
{
public:
    /// Without the SQL state ("#42000") that some servers put at the front.
    static QString Format(const QString &message);
};

/// Every failure of the server or of the client library, above the data-access layer.
class EDacMySqlError : public EException
{
public:
    /// Cleans the message. Message() is "(%d) %s" of code and clean text.
    EDacMySqlError(int errorCode, const QString &errorMessage, const QString &commandText);

    int ErrorCode() const { return FErrorCode; }
    const QString &ErrorMessage() const { return FErrorMessage; }
    /// The statement that failed; empty for a failure to connect.
    const QString &CommandText() const { return FCommandText; }
    /// Whether the session was lost: codes 2006 and 2013 of the client library.
    bool IsLostConnection() const;

private:
    int FErrorCode;
    QString FErrorMessage;
    QString FCommandText;
};
