#include "viewer/surface/UrlBanner.h"

#include "cameras/CameraKey.h"
#include "shared/BuildSettings.h"

#include <QCursor>

using namespace Qt::Literals::StringLiterals;

namespace {

QString bannerText(const QString& url)
{
    const QString address = splitCameraKey(url).address;
    if (address.isEmpty())
        return directorySite() + "/pevora/"_L1;
    return webAddressOf(hostPartOf(address));
}

} // namespace

UrlBanner::UrlBanner(QWidget* parent)
    : ElidedLabel(parent)
    , m_tmrTop(u"tmrTop"_s, CheckMs, this)
{
    setObjectName(u"lblURl"_s);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setCursor(Qt::PointingHandCursor);
    hide();
    connect(&m_tmrTop, &Timer::Tick, this, &UrlBanner::tick);
    connect(this, &ElidedLabel::Click, this, [this] { emit OpenRequested(Tag()); });
}

void UrlBanner::mouseMovedOverImage(int button, int y, const QString& url)
{
    if (button != 0 || y > BandPx)
        return;
    show();
    if (Tag().isEmpty())
        ShowStatusText(bannerText(url), true);
    m_tmrTop.restart();
}

void UrlBanner::tick()
{
    if (!rect().contains(mapFromGlobal(QCursor::pos())))
        hideAndForget();
}

void UrlBanner::hideAndForget()
{
    hide();
    clearTag();
    m_tmrTop.setEnabled(false);
}
