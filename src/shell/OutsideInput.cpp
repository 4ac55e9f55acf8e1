#include "shell/OutsideInput.h"

#include "cameras/CameraKey.h"
#include "shared/InputText.h"

#include <QAction>
#include <QClipboard>
#include <QDropEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QSet>
#include <QUrl>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The files among what was dropped.
QStringList filesOf(const QMimeData& data)
{
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            files << url.toLocalFile();
    }
    return files;
}

/// The address that was dropped or copied: of a link its target, else the text's first line.
QString addressOf(const QMimeData& data)
{
    for (const QUrl& url : data.urls()) {
        if (hasWebScheme(url.toString()))
            return url.toString(QUrl::FullyEncoded);
    }
    return firstLineOf(data.text().trimmed());
}

bool isPictureName(const QString& path)
{
    static const QSet<QString> endings{u"bmp"_s,  u"gif"_s, u"jpg"_s,
                                       u"jpeg"_s, u"png"_s, u"webp"_s};
    return endings.contains(QFileInfo(path).suffix().toLower());
}

} // namespace

OutsideInput::OutsideInput(QWidget* window)
    : QObject(window)
{
    window->setAcceptDrops(true);
    window->installEventFilter(this);
    auto* paste = new QAction(window);
    paste->setObjectName(u"paste"_s);
    paste->setShortcut(QKeySequence::Paste);
    window->addAction(paste);
    connect(paste, &QAction::triggered, this, [this] {
        if (const auto* data = QGuiApplication::clipboard()->mimeData())
            take(*data);
    });
}

bool OutsideInput::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* drag = static_cast<QDragMoveEvent*>(event);
        // What begins in this window, the picture, does not end here.
        if (!drag->source() && (drag->mimeData()->hasUrls() || drag->mimeData()->hasText()))
            drag->acceptProposedAction();
        return true;
    }
    case QEvent::Drop: {
        auto* drop = static_cast<QDropEvent*>(event);
        if (drop->source())
            return true;
        drop->acceptProposedAction();
        take(*drop->mimeData());
        return true;
    }
    default:
        return QObject::eventFilter(watched, event);
    }
}

void OutsideInput::take(const QMimeData& data)
{
    const QStringList files = filesOf(data);
    for (const QString& path : files) {
        if (isPictureName(path))
            emit PictureGiven(path);
        else
            emit FileGiven(path);
    }
    const QString address = files.isEmpty() ? addressOf(data) : QString();
    if (!address.isEmpty())
        emit AddressGiven(address);
}
