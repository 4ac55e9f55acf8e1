#include "shared/TempFiles.h"

#include "platform/files/FileOwner.h"
#include "shared/AppFolder.h"

#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

QString tempFiles::ofFetch(const QString& folder, const QString& extension)
{
    return pathInFolder(folder, "tt."_L1 + extension);
}

QString tempFiles::ofLoading(const QString& folder)
{
    return ofFetch(folder, u"jpg"_s);
}

QString tempFiles::ofSaving(const QString& folder)
{
    return pathInFolder(folder, u"pvm.jpg"_s);
}

void tempFiles::openAnew(QFile& file, const QString& path)
{
    file.close();
    file.setFileName(path);
    file.remove();
    // NewOnly: never through whatever another program may have put in its place meanwhile.
    (void)file.open(QIODevice::WriteOnly | QIODevice::NewOnly,
                    QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

void tempFiles::write(const QString& path, const QByteArray& bytes, OldEnd oldEnd)
{
    QFile file;
    if (!openNoLink(file, path))
        return;
    file.write(bytes);
    if (oldEnd == OldEnd::Cut)
        file.resize(bytes.size());
}

void tempFiles::removeAll(const QString& folder)
{
    QDir dir(folder);
    const QStringList there = dir.entryList(QDir::Files | QDir::System | QDir::Hidden);
    // A camera's path ending in "JPG" leaves a "tt.JPG".
    for (const auto name : {"pvm.bmp"_L1, "tt.jpg"_L1, "tt.gif"_L1, "tt.bmp"_L1}) {
        for (const auto& entry : there) {
            if (entry.compare(name, Qt::CaseInsensitive) == 0)
                dir.remove(entry);
        }
    }
}
