#pragma once

#include "picture/Still.h"
#include "shared/Clock.h"

#include <QFileDialog>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>

class FileDialog;
class ImageView;

/// The viewer's file commands: each asks for a file name in the dialog `cd` and then does what it
/// says, or tells its owner to. A dialog that is cancelled changes nothing. One dialog at a time:
/// a command given while it is open only brings it to the front.
///
/// The dialog starts in the folder of the last file that was chosen here, at first in the user's
/// Pictures folder where there is one, else in the home folder. For a file to save it offers a name
/// of camera and time (see offeredName), an image as JPEG.
class FileCommands : public QObject
{
    Q_OBJECT

public:
    /// Owned by `viewer`, whose window the dialogs belong to, and whose pictures `imgMain` shows.
    FileCommands(ImageView& imgMain, QWidget* viewer);

    /// Shows the chosen file's picture. What cannot be read, is longer than a picture may be, or
    /// is no picture ends with the status "  Error: Not a picture.".
    void OpenImage();

    /// The same with the file at `path`.
    void openImageFile(const QString& path);

    /// Saves the picture, the one on show now, whatever is when the dialog is answered, in the
    /// format of the name's last three characters (see savePicture). Without a picture no dialog
    /// opens. Ends with Saved or NotSaved.
    void SaveImage();

    /// Only ask for the name; what becomes of it is the owner's.
    void OpenMovie();
    void SaveMovie();

    /// The next file to save is named after the camera of `key`: by `name`, or by its host where
    /// that is blank. Both are empty where it came from no camera.
    void setCamera(const QString& name, const QString& key);

    /// Whether a dialog is open; Answered follows.
    bool isAsking() const { return !m_cd.isNull(); }

    void setClock(const Clock& clock) { m_clock = clock; }

    /// The folder of the last file that was chosen here; empty before that.
    QString LastFolder() const { return m_lastFolder; }
    void setLastFolder(const QString& folder) { m_lastFolder = folder; }

signals:
    /// `picture` has been opened and is on show: to be kept.
    void ImageOpened(const Still& picture);
    void MovieOpenRequested(const QString& path);
    void MovieSaveRequested(const QString& path);
    /// The picture is in the file `path`.
    void Saved(const QString& path);
    /// It is not, and an old file stayed as it was. `reason` is a few words without a full stop.
    void NotSaved(const QString& path, const QString& reason);
    /// A line for the status line.
    void StatusText(const QString& text);
    /// The dialog has closed, and its answer was followed.
    void Answered();

private:
    using Command = std::function<void(const QString& path)>;

    void ask(QFileDialog::AcceptMode mode, const QStringList& filters, const QString& ending,
             Command command);
    QString startFolder() const;
    void saveImageFile(const QString& path, const Still& picture);

    ImageView& m_imgMain;
    QWidget* m_viewer;
    QPointer<FileDialog> m_cd;
    QString m_lastFolder;
    QString m_camera;
    Clock m_clock = systemClock;
};
