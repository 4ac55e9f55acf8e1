#include "platform/files/ExchangeNames.h"

bool exchangeNames(const QString& /*one*/, const QString& /*other*/)
{
    // The system has no such step.
    return false;
}
