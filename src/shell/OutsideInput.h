#pragma once

#include <QObject>

class QMimeData;
class QWidget;

/// What comes into the main window by drag and drop, and by Ctrl+V where no text box has the
/// keyboard: an address, a picture, a movie or a camera list. Several files come one by one, in
/// their order; of an address and files, the files.
class OutsideInput : public QObject
{
    Q_OBJECT

public:
    /// Owned by `window`.
    explicit OutsideInput(QWidget* window);

signals:
    /// An address or a camera's name, one line, as somebody might have typed it.
    void AddressGiven(const QString& text);
    /// A file whose name ends as a picture's does.
    void PictureGiven(const QString& path);
    /// Any other file: a movie or a camera list.
    void FileGiven(const QString& path);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void take(const QMimeData& data);
};
