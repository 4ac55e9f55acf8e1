#include "widgets/OpenAddress.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

bool openAddress(const QString& address)
{
    const QUrl url(address, QUrl::TolerantMode);
    // The scheme is in lower case already, whatever the address had.
    if (!url.isValid() || url.host().isEmpty() ||
        (url.scheme() != "http"_L1 && url.scheme() != "https"_L1))
        return false;
    return QDesktopServices::openUrl(url);
}

bool openHelpPage(const QString& path)
{
    const QFileInfo page(path);
    if (!page.isAbsolute() || page.suffix() != "html"_L1 || !page.isFile())
        return false;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}
