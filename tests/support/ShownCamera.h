#pragma once

#include "viewer/WebCam.h"

#include <QStringList>
#include <QTemporaryDir>

class Timer;

/// The numbers of all of the toolbar's buttons.
inline const QList<int> AllButtons{1, 2, 4, 5, 6, 7, 9, 10, 12, 13, 15};

/// How one fetch ended.
struct Outcome
{
    /// In order: "change URL", "error TEXT", "done".
    QStringList told;
    /// What the status line says afterwards.
    QString status;
};

/// A camera viewer in a window of its own, on screen, and what a person and its owner see of it.
class ShownCamera : public QObject
{
public:
    ShownCamera();

    /// Starts a fetch; what is told from here on belongs to it.
    void start(const QString& url = {});
    /// Waits for the end of the fetch under way: at most 30 s, after which "not over" is told.
    Outcome end();
    /// Both.
    Outcome fetch(const QString& url = {});
    /// As fetch, but the server falls silent after `bytes` of answer: then ten seconds pass.
    Outcome fetchUntilSilence(const QString& url, qsizetype bytes);

    QStringList told() const { return m_told; }
    QString status();
    /// Whether a fetch counts as under way, as far as can be seen: lets the status line's last
    /// second pass, and looks whether it has gone.
    bool busy();
    /// The encoded bytes of the picture on show.
    QByteArray picture();
    /// The colour of the middle of the window.
    QColor middle();
    QString caption();
    void press(int button);
    /// Item `item` (from 1) of the menu of a toolbar's button.
    void chooseFromMenu(int button, int item);
    /// The numbers of the toolbar's enabled buttons.
    QList<int> enabledButtons();
    Timer& timer(const char* name);
    QString folder() const { return m_folder.path(); }
    /// The part of that name; ends the program where the viewer has none.
    template<typename T>
    T& part(const char* name)
    {
        auto* found = cam.findChild<T*>(QString::fromLatin1(name));
        if (!found)
            qFatal("the viewer has no %s", name);
        return *found;
    }

    /// Fetches a good picture of a colour not used before from a server of its own, looks at the
    /// screen, starts a fetch that is not answered and stops it by the toolbar's button. Empty
    /// where all of this worked, else what did not.
    QString trouble();

private:
    QTemporaryDir m_folder;
    QStringList m_told;
    bool m_over = false;
    int m_pictures = 0;

public:
    WebCam cam{m_folder.path()};
};
