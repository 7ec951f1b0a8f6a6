#include "core/uDacMySqlError.h"

#include "support/uFormat.h"
#include "support/uRegExUtils.h"

QString TDacMySqlErrorFormatter::Format(const QString &message)
{
    return TRegExUtils::Replace(message, QStringLiteral("^#\\d+"), QString());
}

EDacMySqlError::EDacMySqlError(int errorCode, const QString &errorMessage,
                               const QString &commandText)
    : FErrorCode(errorCode), FErrorMessage(TDacMySqlErrorFormatter::Format(errorMessage)),
      FCommandText(commandText)
{
    SetMessage(TFormat::Format("(%d) %s", {FErrorCode, FErrorMessage}));
}

bool EDacMySqlError::IsLostConnection() const
{
    constexpr int ServerGone = 2006; // CR_SERVER_GONE_ERROR
    constexpr int ServerLost = 2013; // CR_SERVER_LOST
    return FErrorCode == ServerGone || FErrorCode == ServerLost;
}
