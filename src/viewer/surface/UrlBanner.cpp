#include "viewer/surface/UrlBanner.h"

#include "cameras/CameraKey.h"
#include "shared/BuildSettings.h"

#include <QCursor>

#include <utility>

using namespace Qt::Literals::StringLiterals;

UrlBanner::UrlBanner(std::function<QString()> url, QWidget* parent)
    : ElidedLabel(parent)
    , m_url(std::move(url))
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

void UrlBanner::mouseMovedOverImage(int button, int y)
{
    if (button != 0 || y > BandPx)
        return;
    show();
    if (Tag().isEmpty())
        ShowStatusText(bannerText(), true);
    m_tmrTop.restart();
}

QString UrlBanner::bannerText() const
{
    const QString address = splitCameraKey(m_url()).address;
    if (address.isEmpty())
        return directorySite() + "/pevora/"_L1;
    return webAddressOf(hostPartOf(address));
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
