#pragma once

#include <QObject>
#include <QTemporaryDir>

#include <optional>

class QWidget;
class Still;

/// Drags a picture out of the window: as an image, and as a file that holds the picture as it came.
/// The files lie in a temporary folder, made for the first one, which goes with it: whoever they
/// are dropped on may read them until the program ends.
class PictureDrag : public QObject
{
    Q_OBJECT

public:
    /// Owned by `viewer`, which the drags come from.
    explicit PictureDrag(QWidget* viewer);

    /// Drags `picture`, whose file is named `name` and the ending of its format. Returns when it
    /// has been dropped: Qt offers no other way; everything else goes on meanwhile. Does nothing
    /// without a picture, or while something is dragged already.
    void drag(const Still& picture, const QString& name);

private:
    QString fileOf(const Still& picture, const QString& name);

    QWidget* m_viewer;
    std::optional<QTemporaryDir> m_folder;
    bool m_dragging = false;
};
