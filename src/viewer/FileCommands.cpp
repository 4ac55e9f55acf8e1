#include "viewer/FileCommands.h"

#include "display/ImageView.h"
#include "picture/SaveImage.h"
#include "shared/ReadFile.h"
#include "widgets/FileDialog.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QWidget>

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
    ask(QFileDialog::AcceptOpen, {u"Image Files (*.bmp,*.jpg,*.gif)(*.bmp *.jpg *.gif)"_s},
        &FileCommands::openImageFile);
}

void FileCommands::SaveImage()
{
    if (!m_imgMain.GetOriginalPic().isNull())
        ask(QFileDialog::AcceptSave,
            {u"Bitmap (*.bmp)(*.bmp)"_s, u"GIF (*.gif)(*.gif)"_s, u"JPEG (*.jpg)(*.jpg)"_s},
            &FileCommands::saveImageFile);
}

void FileCommands::OpenMovie()
{
    ask(QFileDialog::AcceptOpen, {MovieFilter}, &FileCommands::MovieOpenRequested);
}

void FileCommands::SaveMovie()
{
    ask(QFileDialog::AcceptSave, {MovieFilter}, &FileCommands::MovieSaveRequested);
}

void FileCommands::ask(QFileDialog::AcceptMode mode, const QStringList& filters, Command command)
{
    if (m_cd) {
        m_cd->raise();
        m_cd->activateWindow();
        return;
    }
    m_cd = new FileDialog(mode, filters, startFolder(), m_viewer->window());
    // The window that owns it may outlive the viewer.
    connect(this, &QObject::destroyed, m_cd, &QObject::deleteLater);
    // It lives a little longer than it is open.
    connect(m_cd, &QDialog::rejected, this, [this] { m_cd = nullptr; });
    connect(m_cd, &FileDialog::FileChosen, this, [this, command](const QString& path) {
        m_cd = nullptr;
        m_lastFolder = QFileInfo(path).absolutePath();
        (this->*command)(path);
    });
    m_cd->open();
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

void FileCommands::saveImageFile(const QString& path)
{
    if (!savePicture(path, m_imgMain.GetOriginalPic()))
        emit StatusText(u"  Error: Not saved."_s);
}
