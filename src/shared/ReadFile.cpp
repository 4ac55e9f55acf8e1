#include "shared/ReadFile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

std::optional<QByteArray> readFile(const QString& path, qint64 maxBytes)
{
    // Opening a pipe that nobody writes to would wait for ever.
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || file.size() > maxBytes)
        return std::nullopt;

    // The file may grow while it is read: one byte more than it has tells its end.
    QByteArray bytes(file.size() + 1, Qt::Uninitialized);
    qint64 count = 0;
    for (;;) {
        const qint64 got = file.read(bytes.data() + count, bytes.size() - count);
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        count += got;
        if (count > maxBytes)
            return std::nullopt;
        if (count == bytes.size())
            bytes.resize(std::min(2 * bytes.size() + 4096, qsizetype(maxBytes) + 1));
    }
    bytes.truncate(count);
    return bytes;
}
