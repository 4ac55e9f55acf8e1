#include "widgets/OpenAddress.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The scheme is in lower case already, whatever the address had.
bool mayBeOpened(const QUrl& url)
{
    if (url.scheme() == "http"_L1 || url.scheme() == "https"_L1)
        return !url.host().isEmpty();
    // Without fields: mail programs take a file to be attached from them.
    return url.scheme() == "mailto"_L1 && url.path().contains(u'@') && !url.hasQuery();
}

} // namespace

bool openAddress(const QString& address)
{
    const QUrl url(address, QUrl::TolerantMode);
    return url.isValid() && mayBeOpened(url) && QDesktopServices::openUrl(url);
}

bool openHelpPage(const QString& path)
{
    const QFileInfo page(path);
    if (!page.isAbsolute() || page.suffix() != "html"_L1 || !page.isFile())
        return false;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

bool openFolder(const QString& path)
{
    const QFileInfo folder(path);
    if (!folder.isAbsolute() || !folder.isDir())
        return false;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}
