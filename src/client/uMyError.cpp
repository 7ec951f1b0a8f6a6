#include "client/uMyError.h"

#include <errmsg.h>

bool EMyError::IsLostConnection() const
{
    return FErrorCode == CR_SERVER_GONE_ERROR || FErrorCode == CR_SERVER_LOST;
}
