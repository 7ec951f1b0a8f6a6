#include "support/uException.h"

QString ExceptionMessage(const std::exception &e)
{
    if (const auto *own = dynamic_cast<const EException *>(&e))
        return own->Message();
    return QString::fromUtf8(e.what());
}
