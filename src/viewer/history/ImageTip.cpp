#include "viewer/history/ImageTip.h"

#include "cameras/CameraKey.h"
#include "viewer/history/History.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("ImageTip", text);
}

} // namespace

QString imageTip(const History& history, int n)
{
    if (n < 1 || n > history.Count())
        return {};
    QStringList lines;
    if (const QString camera = history.cameraOf(n); !camera.isEmpty())
        lines << webAddressOf(splitCameraKey(camera).address);
    if (const QDateTime time = history.fetchedAt(n); time.isValid())
        lines << translated("Fetched: %1").arg(time.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"));
    if (const QString date = history.lastModifiedAt(n); !date.isEmpty())
        lines << translated("Last-Modified: %1").arg(date);
    const Still picture = history.ilHis().Picture(n);
    lines << translated("%1 x %2 pixels, %3 bytes")
                 .arg(picture.size().width())
                 .arg(picture.size().height())
                 .arg(QLocale().toString(picture.bytes().size()));
    lines << translated("%1 of %2").arg(n).arg(history.Count());
    return lines.join(u'\n');
}

QString asToolTip(const QString& plain)
{
    if (plain.isEmpty())
        return {};
    return "<p style='white-space:pre'>"_L1 + plain.toHtmlEscaped() + "</p>"_L1;
}
