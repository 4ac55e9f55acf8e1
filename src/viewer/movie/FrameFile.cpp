#include "viewer/movie/FrameFile.h"

#include <QFile>
#include <QFileInfo>

void writeFrameFile(const QString& path, const QByteArray& frame, OldEnd oldEnd)
{
    const QFileInfo old(path);
    // Opening a pipe would wait for its reader.
    if (old.isSymLink() || (old.exists() && !old.isFile()))
        return;
    QFile file(path);
    // WriteOnly would cut an old file.
    const auto mode = old.exists() ? QIODevice::ReadWrite | QIODevice::ExistingOnly
                                   : QIODevice::OpenMode(QIODevice::WriteOnly | QIODevice::NewOnly);
    if (!file.open(mode | QIODevice::Unbuffered))
        return;
    file.write(frame);
    if (oldEnd == OldEnd::Cut)
        file.resize(frame.size());
}
