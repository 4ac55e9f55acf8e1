#include "support/ScratchFile.h"

#include "support/Waiting.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "none";
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

QStringList namesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::Hidden |
                                  QDir::NoDotAndDotDot);
}

void ScratchFile::waitUntilSettled() const
{
    const auto changed = QFileInfo(m_path).fileTime(QFile::FileMetadataChangeTime);
    if (!waitFor([&] { return changed.msecsTo(QDateTime::currentDateTime()) > 110; }))
        qFatal("the clock stands still");
}
