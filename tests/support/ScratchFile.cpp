#include "support/ScratchFile.h"

#include "support/Waiting.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTest>

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "none";
}

void ScratchFile::setContent(const QByteArray& bytes) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(m_path));
}

void ScratchFile::waitUntilSettled() const
{
    const auto changed = QFileInfo(m_path).fileTime(QFile::FileMetadataChangeTime);
    if (!waitFor([&] { return changed.msecsTo(QDateTime::currentDateTime()) > 110; }))
        qFatal("the clock stands still");
}
