#include "display/ImageView.h"

#include "display/PictureCanvas.h"
#include "picture/EncodeBitmap.h"
#include "platform/Wallpaper.h"
#include "shared/AppFolder.h"
#include "shared/ReplaceFile.h"

#include <QMenu>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A shown part of the picture smaller than this fraction (or larger than its inverse, in a view
/// smaller than the zoom square) is one flat colour: clicks then change nothing.
constexpr double NothingMoreToSee = 1e-7;

/// Where the zoom square begins in one direction: around `at`, inside 0..`length`. Kept: a view
/// shorter than the square gives a negative begin.
int zoomStart(int at, int length)
{
    constexpr int half = ImageView::ZoomSidePx / 2;
    if (at + half > length)
        return length - ImageView::ZoomSidePx;
    return std::max(0, at - half);
}

} // namespace

ImageView::ImageView(QWidget* parent)
    : QWidget(parent)
    , m_picMain(new PictureCanvas(this))
    , m_mnuRc(new QMenu(this))
{
    m_picMain->setObjectName(u"picMain"_s);
    m_picMain->setAccessibleName(tr("Camera picture"));
    buildMenu();
    connect(m_picMain, &PictureCanvas::Released, this, &ImageView::click);
    connect(m_picMain, &PictureCanvas::Moved, this,
            [this](Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers, QPoint at) {
                const int button = (buttons & Qt::LeftButton ? 1 : 0) |
                                   (buttons & Qt::RightButton ? 2 : 0) |
                                   (buttons & Qt::MiddleButton ? 4 : 0);
                const int shift = (modifiers & Qt::ShiftModifier ? 1 : 0) |
                                  (modifiers & Qt::ControlModifier ? 2 : 0) |
                                  (modifiers & Qt::AltModifier ? 4 : 0);
                emit MouseMove(button, shift, at.x(), at.y());
            });
}

ImageView::~ImageView() = default;

void ImageView::buildMenu()
{
    m_mnuRc->setObjectName(u"mnuRc"_s);
    auto* restore = m_mnuRc->addAction(u"Restore Image"_s, this, &ImageView::fit);
    restore->setObjectName(u"mnuRcRe"_s);
    m_mnuRc->addSeparator();
    auto* desktop =
        m_mnuRc->addAction(u"Set as Desktop Background"_s, this, &ImageView::makeWallpaper);
    desktop->setObjectName(u"mnuRcDesk"_s);
}

QSize ImageView::deviceSize() const
{
    return m_picMain->size() * devicePixelRatioF();
}

void ImageView::setPicture(const Still& picture)
{
    showPicture(picture, {});
}

Still ImageView::loadPicture(const QByteArray& bytes)
{
    QImage decoded;
    const Still picture =
        Still::fromBytes(bytes, m_originalSize ? QSize() : deviceSize(), &decoded);
    if (!picture.isNull())
        showPicture(picture, decoded);
    return picture;
}

void ImageView::showPicture(const Still& picture, const QImage& decoded)
{
    m_picO = picture;
    if (m_originalSize)
        takePictureSize();
    m_region = PictureCanvas::WholePicture;
    m_picMain->showRegion(m_picO, m_region, decoded);
    emit PictureLoad();
}

void ImageView::setOriginalSize(bool on)
{
    m_originalSize = on;
    if (on)
        takePictureSize();
}

void ImageView::takePictureSize()
{
    if (!m_picO.isNull())
        resize(m_picO.size());
}

void ImageView::resizeEvent(QResizeEvent*)
{
    m_picMain->setGeometry(rect());
    fit();
}

void ImageView::fit()
{
    m_region = PictureCanvas::WholePicture;
    m_picMain->showRegion(m_picO, m_region);
}

void ImageView::click(Qt::MouseButton button, QPoint at, QPoint globalAt)
{
    if (m_picO.isNull())
        return;
    if (button == Qt::LeftButton)
        zoomAt(at);
    else
        popUpMenu(globalAt);
}

void ImageView::popUpMenu(QPoint globalAt)
{
    if (!m_picO.isNull())
        m_mnuRc->popup(globalAt);
}

/// The square is one of what is on show now, so that each click zooms further into the last.
void ImageView::zoomAt(QPoint at)
{
    if (m_region.width() < NothingMoreToSee || m_region.height() < NothingMoreToSee ||
        m_region.width() > 1 / NothingMoreToSee || m_region.height() > 1 / NothingMoreToSee)
        return;
    const QSizeF view = m_picMain->size();
    const double left = zoomStart(at.x(), m_picMain->width());
    const double top = zoomStart(at.y(), m_picMain->height());
    m_region = QRectF(m_region.x() + left / view.width() * m_region.width(),
                      m_region.y() + top / view.height() * m_region.height(),
                      ZoomSidePx / view.width() * m_region.width(),
                      ZoomSidePx / view.height() * m_region.height());
    m_picMain->showRegion(m_picO, m_region);
}

void ImageView::makeWallpaper()
{
    const QString folder = wallpaperFolder();
    if (folder.isEmpty())
        return;
    const QByteArray bytes = encodeBitmap(m_picO.image());
    const QString path = pathInFolder(folder, u"Pevora.bmp"_s);
    if (!bytes.isEmpty() && replaceFile(path, bytes))
        SetWallpaper(path);
}

void ImageView::SetWallpaper(const QString& path)
{
    setWallpaper(path);
}
