#include "display/PictureCanvas.h"

#include "picture/SmoothScale.h"
#include "widgets/HintColour.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// Device pixels: more than the largest screens have. So many of a picture at its own size would
/// take a gigabyte on a screen of two device pixels to a logical one.
constexpr qint64 MostOfAScreen = 36'000'000;

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
    const bool wasEmpty = m_picture.isNull();
    const bool isSame = m_picture.isSameAs(picture);
    m_picture = picture;
    m_region = region;
    m_shown = {};
    if (!needsWhole() || !isSame)
        m_whole = {};
    if (needsWhole() && decoded.size() == picture.size())
        m_whole = decoded;
    if (!decoded.isNull())
        render(decoded);
    if (wasEmpty != m_picture.isNull())
        describe();
    update();
}

void PictureCanvas::setCaption(const QString& text)
{
    m_caption = text;
    describe();
    update();
}

void PictureCanvas::describe()
{
    setAccessibleDescription(m_picture.isNull() ? m_caption : QString());
}

bool PictureCanvas::isBeyondScreens() const
{
    const QSize device = sizeInDevicePixels();
    return qint64(device.width()) * device.height() > MostOfAScreen;
}

bool PictureCanvas::needsWhole() const
{
    return !m_region.contains(ZoomRegion::WholePicture) || isBeyondScreens();
}

/// All device pixels that have a part in it.
QRect PictureCanvas::inDevicePixels(const QRect& rect) const
{
    const double ratio = devicePixelRatioF();
    return QRectF(QPointF(rect.topLeft()) * ratio, QSizeF(rect.size()) * ratio).toAlignedRect();
}

/// At least `wanted`, in device pixels.
void PictureCanvas::render(const QImage& decoded, const QRect& wanted)
{
    const QSize device = sizeInDevicePixels();
    if (m_picture.isNull() || device.isEmpty())
        return;
    const QRect all({}, device);
    m_shownAt =
        isBeyondScreens() ? (wanted | inDevicePixels(visibleRegion().boundingRect())) & all : all;
    m_shownOf = device;
    if (m_shownAt.isEmpty())
        return; // It is rendered when something of it is painted.
    m_shown = needsWhole() ? partOfPicture(m_shownAt) : wholePicture(decoded, device);
    m_shown.setDevicePixelRatio(devicePixelRatioF());
}

/// In device pixels, whole ones, so that its edges are sharp.
QRect PictureCanvas::placeOfWhole(const QRectF& region) const
{
    const QSizeF device = sizeInDevicePixels();
    const double perX = device.width() / region.width();
    const double perY = device.height() / region.height();
    return {qRound(-region.x() * perX), qRound(-region.y() * perY), std::max(1, qRound(perX)),
            std::max(1, qRound(perY))};
}

QSize PictureCanvas::sizeInDevicePixels(const QRectF& region) const
{
    return placeOfWhole(region).size();
}

QPixmap PictureCanvas::wholePicture(const QImage& decoded, QSize device) const
{
    const QRect place =
        m_region == ZoomRegion::WholePicture ? QRect({}, device) : placeOfWhole(m_region);
    const QImage image = decoded.isNull() ? m_picture.imageNoSmallerThan(place.size()) : decoded;
    const QImage scaled = smoothlyScaled(image, place.size());
    if (place.size() == device)
        return QPixmap::fromImage(scaled);
    QPixmap whole(device);
    whole.fill(palette().color(QPalette::Window));
    QPainter(&whole).drawImage(place.topLeft(), scaled);
    return whole;
}

/// What of the region lies in `part` of the canvas (in device pixels). Drawn from the unscaled
/// picture, so that a zoom gains detail.
QPixmap PictureCanvas::partOfPicture(const QRect& part)
{
    if (m_whole.isNull())
        m_whole = m_picture.image();
    QImage image(part.size(), QImage::Format_RGB32);
    image.fill(palette().color(QPalette::Window));
    // So many pixels of the picture are one of the canvas.
    const QSizeF device = sizeInDevicePixels();
    const double perX = m_region.width() * m_whole.width() / device.width();
    const double perY = m_region.height() * m_whole.height() / device.height();
    const QRectF source(m_region.x() * m_whole.width() + part.x() * perX,
                        m_region.y() * m_whole.height() + part.y() * perY, part.width() * perX,
                        part.height() * perY);
    // Only what the picture has is drawn, to where it belongs.
    const QRectF inside = source & QRectF(m_whole.rect());
    if (!inside.isEmpty()) {
        const QRectF target((inside.x() - source.x()) / perX, (inside.y() - source.y()) / perY,
                            inside.width() / perX, inside.height() / perY);
        drawSmoothly(image, target, m_whole, inside);
    }
    return QPixmap::fromImage(std::move(image));
}

void PictureCanvas::paintEvent(QPaintEvent* event)
{
    const QRect wanted = inDevicePixels(event->rect()) & QRect({}, sizeInDevicePixels());
    if (m_shown.isNull() || m_shownOf != sizeInDevicePixels() || !m_shownAt.contains(wanted))
        render({}, wanted);
    QPainter painter(this);
    if (m_shown.isNull() || m_shown.hasAlphaChannel())
        painter.fillRect(event->rect(), palette().window());
    if (!m_shown.isNull())
        painter.drawPixmap(QPointF(m_shownAt.topLeft()) / devicePixelRatioF(), m_shown);
    if (m_picture.isNull())
        paintCaption(painter);
}

void PictureCanvas::paintCaption(QPainter& painter) const
{
    constexpr int marginPx = 24;
    painter.setPen(hintColour(palette(), QPalette::Window, QPalette::WindowText));
    painter.drawText(rect().adjusted(marginPx, 0, -marginPx, 0), Qt::AlignCenter | Qt::TextWordWrap,
                     m_caption);
}

/// The room beside a picture is in the window's colour.
void PictureCanvas::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        m_shown = {};
}

void PictureCanvas::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    if (event->button() != Qt::LeftButton)
        return;
    m_leftPressed = true;
    m_dragging = false;
    m_dragFrom = event->globalPosition().toPoint();
}

void PictureCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        m_leftPressed = false;
        if (m_dragging) {
            m_dragging = false;
            emit DragEnded();
            return;
        }
    }
    emit Clicked(event->button(), event->position().toPoint(), event->globalPosition().toPoint());
}

void PictureCanvas::mouseMoveEvent(QMouseEvent* event)
{
    emit Moved(event->buttons(), event->modifiers(), event->position().toPoint());
    if (m_leftPressed && event->buttons() & Qt::LeftButton)
        drag(*event);
}

/// Measured on the screen: what is dragged may be this very widget.
void PictureCanvas::drag(const QMouseEvent& event)
{
    const QPoint at = event.globalPosition().toPoint();
    const QPoint by = at - m_dragFrom;
    if (!m_dragging && by.manhattanLength() < QApplication::startDragDistance())
        return;
    m_dragFrom = at;
    if (!m_dragging) {
        m_dragging = true;
        emit DragBegan();
    }
    emit Dragged(by);
}

void PictureCanvas::wheelEvent(QWheelEvent* event)
{
    if (m_picture.isNull() || event->angleDelta().y() == 0) {
        event->ignore();
        return;
    }
    event->accept();
    constexpr double perNotch = QWheelEvent::DefaultDeltasPerStep;
    emit WheelTurned(event->angleDelta().y() / perNotch, event->position());
}
