#include "display/ImageView.h"

#include "display/PictureCanvas.h"
#include "picture/BitmapFile.h"
#include "platform/Wallpaper.h"
#include "shared/AppFolder.h"
#include "shared/ReplaceFile.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

using namespace Qt::Literals::StringLiterals;

ImageView::ImageView(QWidget* parent)
    : QWidget(parent)
    , m_picMain(new PictureCanvas(this))
    , m_mnuRc(new QMenu(this))
{
    m_picMain->setObjectName(u"picMain"_s);
    m_picMain->setAccessibleName(tr("Camera picture"));
    buildMenu();
    m_picMain->setCaption(tr("Choose a camera on the left, or type an address below."));
    connect(m_picMain, &PictureCanvas::Clicked, this, &ImageView::click);
    connect(m_picMain, &PictureCanvas::DragBegan, this, &ImageView::beginDrag);
    connect(m_picMain, &PictureCanvas::Dragged, this, &ImageView::drag);
    connect(m_picMain, &PictureCanvas::DragEnded, this, &ImageView::endDrag);
    connect(m_picMain, &PictureCanvas::WheelTurned, this, [this](double notches, QPointF at) {
        m_region.zoomByWheel(notches, at);
        showRegion();
    });
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
    auto* restore = m_mnuRc->addAction(u"Restore Image"_s, this, &ImageView::restore);
    restore->setObjectName(u"mnuRcRe"_s);
    m_mnuRc->addSeparator();
    auto* desktop =
        m_mnuRc->addAction(u"Set as Desktop Background"_s, this, &ImageView::makeWallpaper);
    desktop->setObjectName(u"mnuRcDesk"_s);
    auto* copy = m_mnuRc->addAction(tr("Copy Image"), this, &ImageView::copyPicture);
    copy->setObjectName(u"mnuRcCopy"_s);
    copy->setShortcut(QKeySequence::Copy);
    // A menu that pops up alone gives its keys to nobody: they are the view's, while it is seen.
    addAction(copy);
}

/// What of a new picture has to be decoded: all for its own size and for a part of it, else no more
/// than is shown, as far as that can be told before its size is known.
QSize ImageView::neededSize() const
{
    if (m_originalSize || m_region.isZoomed())
        return {};
    return m_picMain->sizeInDevicePixels(m_region.shown());
}

void ImageView::setPicture(const Still& picture)
{
    showPicture(picture, {});
}

Still ImageView::loadPicture(const QByteArray& bytes)
{
    QImage decoded;
    const Still picture = Still::fromBytes(bytes, neededSize(), &decoded);
    if (picture.isNull())
        return picture;
    // The room beside another picture may be less: it is decoded anew when it is painted.
    if (m_keepProportions && picture.size() != m_picO.size() && decoded.size() != picture.size())
        decoded = {};
    showPicture(picture, decoded);
    return picture;
}

void ImageView::showPicture(const Still& picture, const QImage& decoded)
{
    const bool sameSize = picture.size() == m_picO.size();
    m_picO = picture;
    if (m_originalSize)
        takePictureSize();
    if (!sameSize)
        m_region.restore(m_picO.size(), size(), m_keepProportions);
    showRegion(decoded);
    emit PictureLoad();
}

void ImageView::setOriginalSize(bool on)
{
    m_originalSize = on;
    if (on)
        takePictureSize();
}

void ImageView::setKeepProportions(bool on)
{
    m_keepProportions = on;
    fit();
}

void ImageView::setLargerThanRoom(bool larger)
{
    m_largerThanRoom = larger;
    updateCursor();
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
    m_region.restore(m_picO.size(), size(), m_keepProportions);
    showRegion();
}

void ImageView::restore()
{
    fit();
    emit Restored();
}

void ImageView::showRegion(const QImage& decoded)
{
    m_picMain->showRegion(m_picO, m_region.shown(), decoded);
    updateCursor();
}

void ImageView::click(Qt::MouseButton button, QPoint at, QPoint globalAt)
{
    if (m_picO.isNull())
        return;
    if (button != Qt::LeftButton) {
        popUpMenu(globalAt);
        return;
    }
    m_region.zoomIntoSquare(at);
    showRegion();
}

void ImageView::popUpMenu(QPoint globalAt)
{
    if (!m_picO.isNull())
        m_mnuRc->popup(globalAt);
}

bool ImageView::canMove() const
{
    return !m_picO.isNull() && (m_largerThanRoom || m_region.canMove());
}

void ImageView::beginDrag()
{
    m_moving = canMove();
    updateCursor();
    if (!m_moving && !m_picO.isNull())
        emit DragOutWanted();
}

/// First what the zoom does not show, then what the room does not.
void ImageView::drag(QPoint by)
{
    if (!m_moving)
        return;
    const QPoint left = m_region.moveBy(by).toPoint();
    showRegion();
    if (m_largerThanRoom && !left.isNull())
        emit PanWanted(left);
}

void ImageView::endDrag()
{
    m_moving = false;
    updateCursor();
}

void ImageView::updateCursor()
{
    if (m_moving)
        m_picMain->setCursor(Qt::ClosedHandCursor);
    else if (canMove())
        m_picMain->setCursor(Qt::OpenHandCursor);
    else
        m_picMain->unsetCursor();
}

void ImageView::copyPicture() const
{
    if (!m_picO.isNull())
        QGuiApplication::clipboard()->setImage(m_picO.image());
}

void ImageView::makeWallpaper()
{
    const QString folder = wallpaperFolder();
    if (folder.isEmpty())
        return;
    const BitmapFile file(m_picO.image());
    const QString path = pathInFolder(folder, u"Pevora.bmp"_s);
    if (!file.bytes().isEmpty() && replaceFile(path, file.bytes(), nullptr, NewFile::Document))
        SetWallpaper(path);
}

void ImageView::SetWallpaper(const QString& path)
{
    setWallpaper(path);
}
