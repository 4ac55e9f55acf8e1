#include "shared/TempFiles.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

void removeTempFiles(const QString& folder)
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
