#pragma once

#include "picture/Still.h"

#include <QFileDialog>
#include <QObject>
#include <QPointer>
#include <QStringList>

class FileDialog;
class ImageView;

/// The viewer's file commands: each asks for a file name in the dialog `cd` and then does what it
/// says, or tells its owner to. A dialog that is cancelled changes nothing. One dialog at a time:
/// a command given while it is open only brings it to the front.
///
/// The dialog starts in the folder of the last file that was chosen here, at first in the user's
/// Pictures folder where there is one, else in the home folder.
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

    /// Saves the picture, the one on show when the dialog is answered, in the format of the
    /// name's last three characters (see savePicture). Without a picture no dialog opens. Ends
    /// with the status "  Error: Not saved." where it fails; an old file then stays.
    void SaveImage();

    /// Only ask for the name; what becomes of it is the owner's.
    void OpenMovie();
    void SaveMovie();

signals:
    /// `picture` has been opened and is on show: to be kept.
    void ImageOpened(const Still& picture);
    void MovieOpenRequested(const QString& path);
    void MovieSaveRequested(const QString& path);
    /// A line for the status line.
    void StatusText(const QString& text);

private:
    using Command = void (FileCommands::*)(const QString& path);

    void ask(QFileDialog::AcceptMode mode, const QStringList& filters, Command command);
    QString startFolder() const;
    void saveImageFile(const QString& path);

    ImageView& m_imgMain;
    QWidget* m_viewer;
    QPointer<FileDialog> m_cd;
    QString m_lastFolder;
};
