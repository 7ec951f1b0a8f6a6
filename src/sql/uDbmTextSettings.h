#pragma once

#include <QString>

/// What the server keeps beside a stored text: the settings of the session that made it.
struct TDbmTextSettings
{
    QString SQLMode;
    QString CharsetClient;       // empty: as in the session in use
    QString CollationConnection; // likewise
};
