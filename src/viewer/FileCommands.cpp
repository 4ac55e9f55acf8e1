#include "viewer/FileCommands.h"

#include "cameras/CameraKey.h"
#include "display/ImageView.h"
#include "picture/SaveImage.h"
#include "shared/ReadFile.h"
#include "viewer/OfferedName.h"
#include "widgets/FileDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>
#include <QWidget>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto MovieFilter = "Pevora Movie (*.pvm)(*.pvm)"_L1;

} // namespace

FileCommands::FileCommands(ImageView& imgMain, QWidget* viewer)
    : QObject(viewer)
    , m_imgMain(imgMain)
    , m_viewer(viewer)
{
}

void FileCommands::OpenImage()
{
    ask(QFileDialog::AcceptOpen, {u"Image Files (*.bmp,*.jpg,*.gif)(*.bmp *.jpg *.gif)"_s}, {},
        [this](const QString& path) { openImageFile(path); });
}

void FileCommands::SaveImage()
{
    const Still picture = m_imgMain.GetOriginalPic();
    if (!picture.isNull())
        ask(QFileDialog::AcceptSave,
            {u"Bitmap (*.bmp)(*.bmp)"_s, u"GIF (*.gif)(*.gif)"_s, u"JPEG (*.jpg)(*.jpg)"_s},
            u".jpg"_s, [this, picture](const QString& path) { saveImageFile(path, picture); });
}

void FileCommands::OpenMovie()
{
    ask(QFileDialog::AcceptOpen, {MovieFilter}, {},
        [this](const QString& path) { emit MovieOpenRequested(path); });
}

void FileCommands::SaveMovie()
{
    ask(QFileDialog::AcceptSave, {MovieFilter}, u".pvm"_s,
        [this](const QString& path) { emit MovieSaveRequested(path); });
}

void FileCommands::ask(QFileDialog::AcceptMode mode, const QStringList& filters,
                       const QString& ending, Command command)
{
    if (m_cd) {
        m_cd->raise();
        m_cd->activateWindow();
        return;
    }
    m_cd = new FileDialog(mode, filters, startFolder(), m_viewer->window());
    if (mode == QFileDialog::AcceptSave) {
        m_cd->selectNameFilter(filters.last()); // the type of the name that is offered
        m_cd->selectFile(offeredName(m_camera, m_clock()) + ending);
    }
    // The window that owns it may outlive the viewer.
    connect(this, &QObject::destroyed, m_cd, &QObject::deleteLater);
    // It lives a little longer than it is open.
    connect(m_cd, &QDialog::rejected, this, [this] {
        m_cd = nullptr;
        emit Answered();
    });
    connect(m_cd, &FileDialog::FileChosen, this,
            [this, command = std::move(command)](const QString& path) {
                m_cd = nullptr;
                m_lastFolder = QFileInfo(path).absolutePath();
                command(path);
                emit Answered();
            });
    m_cd->open();
}

void FileCommands::setCamera(const QString& name, const QString& key)
{
    m_camera =
        name.trimmed().isEmpty() ? QUrl(webAddressOf(splitCameraKey(key).address)).host() : name;
}

QString FileCommands::startFolder() const
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    for (const QString& folder : {m_lastFolder, pictures}) {
        if (!folder.isEmpty() && QFileInfo(folder).isDir())
            return folder;
    }
    return QDir::homePath();
}

void FileCommands::openImageFile(const QString& path)
{
    const auto bytes = readFile(path, Still::MaxEncodedBytes);
    const Still picture = bytes ? m_imgMain.loadPicture(*bytes) : Still();
    if (picture.isNull())
        emit StatusText(u"  Error: Not a picture."_s);
    else
        emit ImageOpened(picture);
}

void FileCommands::saveImageFile(const QString& path, const Still& picture)
{
    QString reason;
    if (savePicture(path, picture, &reason))
        emit Saved(path);
    else
        emit NotSaved(path, reason);
}
