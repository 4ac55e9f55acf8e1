#include "viewer/PictureDrag.h"

#include "picture/BitmapFile.h"
#include "picture/SmoothScale.h"
#include "picture/Still.h"
#include "shared/TempFiles.h"

#include <QDrag>
#include <QMimeData>
#include <QMimeDatabase>
#include <QPixmap>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QUrl>
#include <QWidget>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize ThumbnailPx(160, 120);

/// What no file system takes in a name, or a shell might misread, becomes a hyphen.
QString fileName(QString name)
{
    static const QRegularExpression odd(u"[^\\w .-]+"_s,
                                        QRegularExpression::UseUnicodePropertiesOption);
    return name.replace(odd, u"-"_s);
}

} // namespace

PictureDrag::PictureDrag(QWidget* viewer)
    : QObject(viewer)
    , m_viewer(viewer)
{
}

/// Empty where it cannot be written. What is no picture by its first bytes goes as a bitmap.
QString PictureDrag::fileOf(const Still& picture, const QString& name)
{
    if (!m_folder)
        m_folder.emplace();
    if (!m_folder->isValid())
        return {};
    const QMimeType type = QMimeDatabase().mimeTypeForData(picture.bytes());
    const bool asItCame = type.name().startsWith("image/"_L1);
    const QString ending = asItCame ? type.preferredSuffix() : u"bmp"_s;
    const QString path = m_folder->filePath(fileName(name) + u'.' + ending);
    tempFiles::write(path, asItCame ? picture.bytes() : BitmapFile(picture.image()).bytes(),
                     tempFiles::OldEnd::Cut);
    return path;
}

void PictureDrag::drag(const Still& picture, const QString& name)
{
    if (picture.isNull() || m_dragging)
        return;
    const QScopedValueRollback dragging(m_dragging, true);
    auto data = std::make_unique<QMimeData>();
    data->setImageData(picture.image());
    if (const QString path = fileOf(picture, name); !path.isEmpty())
        data->setUrls({QUrl::fromLocalFile(path)});
    const QImage small = picture.imageNoSmallerThan(ThumbnailPx);
    auto* drag = new QDrag(m_viewer); // deletes itself when it is over
    drag->setMimeData(data.release());
    const QSize size = small.size().scaled(ThumbnailPx, Qt::KeepAspectRatio);
    drag->setPixmap(QPixmap::fromImage(smoothlyScaled(small, size.expandedTo({1, 1}))));
    drag->exec(Qt::CopyAction);
}
