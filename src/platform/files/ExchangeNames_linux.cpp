#include "platform/files/ExchangeNames.h"

#include <QFile>

#include <cstdio>
#include <fcntl.h>

bool exchangeNames(const QString& one, const QString& other)
{
    return ::renameat2(AT_FDCWD, QFile::encodeName(one).constData(), AT_FDCWD,
                       QFile::encodeName(other).constData(), RENAME_EXCHANGE) == 0;
}
