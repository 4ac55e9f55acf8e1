#pragma once

#include <QObject>
#include <QRect>
#include <QString>

class CamList;
class MainArea;
class WebCam;
class QWidget;

/// What the main window remembers beside its checks, in the section WINDOW of pref.ini: a key is
/// there only while it differs from its default. A value that is none is ignored.
///
/// - PLACE, "x y width height" in logical pixels: where the window was, without its frame and
/// before
///   it was maximised. Default: what the window manager chooses, until the window is moved or
///   another size. A place that no screen has any more is moved, and made smaller, into one.
/// - MAXIMISED, "True".
/// - LISTWIDTH, in logical pixels: how wide the list's column was dragged.
/// - INTERVAL, in seconds; 30 by default.
/// - FOLDER: where the last file was chosen.
/// - CAMERA: the key of the camera last watched, where it is in the list: the header of any other
///   may be a secret. It is selected in the list, and not fetched.
class WindowPreferences : public QObject
{
    Q_OBJECT

public:
    /// All of them live as long; owned by `window`, which has its default size.
    WindowPreferences(QWidget& window, MainArea& area, CamList& list);

    /// Reads and applies them, before the window is shown.
    void load(const QString& path);
    void save(const QString& path) const;

    /// `place`, moved and made smaller so that it lies within one of `screens` (their available
    /// areas), the one that has most of it; invalid where none has any of it, or it is none.
    static QRect within(const QRect& place, const QList<QRect>& screens);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString place() const;
    QString camera() const;
    void watch();

    QWidget& m_window;
    MainArea& m_area;
    WebCam& m_cam;
    CamList& m_list;
    QSize m_defaultSize;
    int m_defaultListWidth;
    /// Where the window was when the window manager had placed it; invalid before that, and where
    /// its place was remembered.
    QRect m_placed;
    bool m_isRemembered = false;
    /// Where the window is, or was before it was maximised or showed a picture alone.
    QRect m_normal;
    bool m_isMaximised = false;
    /// As it was read.
    QString m_camera;
};
