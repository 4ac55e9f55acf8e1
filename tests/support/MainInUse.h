#pragma once

#include "camlist/CamList.h"
#include "camlist/CameraTreeView.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "support/ViewOptions.h"
#include "support/Waiting.h"
#include "viewer/WebCam.h"

#include <QSignalSpy>

/// The main window in the hands of a person who does a bit of everything with it, and what that
/// person sees.
class MainInUse : public ShownMain
{
public:
    WebCam& cam() { return part<WebCam>("Cam"); }
    CamList& list() { return part<CamList>("cList"); }
    CameraTreeView& tree() { return part<CameraTreeView>("tvwCat"); }
    QList<CameraRecord> cameras();

    /// The visible entries of the Favorites menu below its separator.
    QStringList favouritesMenu();

    /// As pref.ini has them: how the window really is, not what its menus say; of the tray icon,
    /// which stands on the desktop, the menu's check.
    Preferences options();
    /// Switches each of them by a click on its menu entry.
    void switchAllOptions();

    /// What the caption says of the picture on show, and how wide that is.
    QString caption();
    int shownWidth();
    /// Clicks a button of the toolbar.
    void press(int button);

    /// Fetches by what `act` does, with `picture` as the answer of `server`, and waits until that
    /// is over. False where no image came of it.
    template<typename Act>
    bool fetches(ScriptedServer& server, const QByteArray& picture, Act act)
    {
        server.play(pictureAnswer(picture));
        QSignalSpy changes(&cam(), &WebCam::ImageChange);
        QSignalSpy over(&cam(), &WebCam::Outcome);
        act();
        if (over.isEmpty() && !waitForSignal(over))
            qFatal("the fetch does not end");
        return changes.count() == 1;
    }

    /// Saves by the toolbar's menu, whose items count from 1, and waits until it is done; ends the
    /// test program where it is not.
    void save(int item, const QString& file);
};
