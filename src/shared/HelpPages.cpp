#include "shared/HelpPages.h"

#include "shared/AppFolder.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

QString helpPageLocation(const QString& programFolder, const QString& page)
{
    QString path;
    for (const QString& folder : {u"../share/pevora/help"_s, u"help"_s}) {
        path = QDir::cleanPath(pathInFolder(pathInFolder(programFolder, folder), page));
        if (QFileInfo(path).isFile())
            break;
    }
    return path;
}
