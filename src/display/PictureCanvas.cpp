#include "display/PictureCanvas.h"

#include "picture/SmoothScale.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace {

/// Draws `source` (in pixels of `picture`) over `target` (in pixels of `onto`). The painter blends
/// four pixels for each of its own, so what shrinks is first brought to about its size by means
/// over all of its pixels.
void drawSmoothly(QImage& onto, const QRectF& target, const QImage& picture, QRectF source)
{
    QImage part = picture;
    if (source.width() > target.width() || source.height() > target.height()) {
        const QRect cut = source.toAlignedRect() & picture.rect();
        const double scaleX = std::min(1.0, target.width() / source.width());
        const double scaleY = std::min(1.0, target.height() / source.height());
        const QSize size(std::max(1, qRound(cut.width() * scaleX)),
                         std::max(1, qRound(cut.height() * scaleY)));
        part = smoothlyScaled(picture.copy(cut), size);
        const double partX = double(size.width()) / cut.width();
        const double partY = double(size.height()) / cut.height();
        source = QRectF((source.x() - cut.x()) * partX, (source.y() - cut.y()) * partY,
                        source.width() * partX, source.height() * partY);
    }
    QPainter painter(&onto);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, part, source);
}

} // namespace

PictureCanvas::PictureCanvas(QWidget* parent)
    : QWidget(parent)
{
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PictureCanvas::showRegion(const Still& picture, const QRectF& region, const QImage& decoded)
{
    m_picture = picture;
    m_region = region;
    m_shown = {};
    if (region == WholePicture)
        m_whole = {};
    if (!decoded.isNull())
        render(decoded);
    update();
}

void PictureCanvas::render(const QImage& decoded)
{
    const QSize device = size() * devicePixelRatioF();
    if (m_picture.isNull() || device.isEmpty())
        return;
    m_shown = m_region == WholePicture ? wholePicture(decoded, device) : regionOfPicture(device);
    m_shown.setDevicePixelRatio(devicePixelRatioF());
}

QPixmap PictureCanvas::wholePicture(const QImage& decoded, QSize device) const
{
    const QImage image = decoded.isNull() ? m_picture.imageNoSmallerThan(device) : decoded;
    return QPixmap::fromImage(smoothlyScaled(image, device));
}

/// Drawn from the unscaled picture, so that a zoom gains detail.
QPixmap PictureCanvas::regionOfPicture(QSize device)
{
    if (m_whole.isNull())
        m_whole = m_picture.image();
    QImage image(device, QImage::Format_RGB32);
    image.fill(palette().color(QPalette::Window));
    const QRectF source(m_region.x() * m_whole.width(), m_region.y() * m_whole.height(),
                        m_region.width() * m_whole.width(), m_region.height() * m_whole.height());
    // Only what the picture has is drawn, to where it belongs.
    const QRectF inside = source & QRectF(m_whole.rect());
    if (!inside.isEmpty()) {
        const double scaleX = device.width() / source.width();
        const double scaleY = device.height() / source.height();
        const QRectF target((inside.x() - source.x()) * scaleX, (inside.y() - source.y()) * scaleY,
                            inside.width() * scaleX, inside.height() * scaleY);
        drawSmoothly(image, target, m_whole, inside);
    }
    return QPixmap::fromImage(std::move(image));
}

void PictureCanvas::paintEvent(QPaintEvent* event)
{
    const QSize device = size() * devicePixelRatioF();
    if (m_shown.size() != device)
        render({});
    QPainter painter(this);
    if (m_shown.isNull() || m_shown.hasAlphaChannel())
        painter.fillRect(event->rect(), palette().window());
    if (!m_shown.isNull())
        painter.drawPixmap(0, 0, m_shown);
}

void PictureCanvas::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void PictureCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    emit Released(event->button(), event->position().toPoint(), event->globalPosition().toPoint());
}

void PictureCanvas::mouseMoveEvent(QMouseEvent* event)
{
    emit Moved(event->buttons(), event->modifiers(), event->position().toPoint());
}
