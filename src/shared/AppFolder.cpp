#include "shared/AppFolder.h"

#include "platform/files/FileOwner.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryFile>

using namespace Qt::Literals::StringLiterals;

namespace {

// Tried out, because permission bits do not tell of read-only media, nor on Windows of access
// lists. The file never has a name where the file system allows that, and goes at once anyway.
bool canBeWritten(const QString& folder)
{
    QTemporaryFile probe(pathInFolder(folder, u"pevora-XXXXXX"_s));
    return probe.open();
}

} // namespace

QString userDataFolder()
{
    const QString dataRoot = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return pathInFolder(dataRoot, u"pevora"_s);
}

QString applicationFolder()
{
    return applicationFolder(QCoreApplication::applicationDirPath(), userDataFolder());
}

QString applicationFolder(const QString& programFolder, const QString& dataFolder)
{
    const bool installed = QFileInfo(pathInFolder(programFolder, u"../share/pevora"_s)).isDir();
    if (!installed && isClosedToOthers(programFolder) && canBeWritten(programFolder))
        return programFolder;
    // One that cannot be made shows when a file is saved into it.
    QDir().mkpath(dataFolder);
    return dataFolder;
}

QString pathInFolder(const QString& folder, const QString& fileName)
{
    const bool parted = folder.endsWith(u'/') || folder.endsWith(QDir::separator());
    return parted ? folder + fileName : folder + u'/' + fileName;
}

QString languageFolder(const QString& applicationFolder, const QString& programFolder)
{
    for (const QString& folder : {applicationFolder, programFolder}) {
        if (QFileInfo(pathInFolder(folder, u"lan.ini"_s)).isFile())
            return folder;
    }
    return {};
}
