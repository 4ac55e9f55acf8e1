#pragma once

#include "shared/Timer.h"
#include "shell/notices/NoticeTable.h"

#include <QObject>

class CamList;
class Favourites;
class WebCam;

/// Says in the viewer's notice what has happened to the camera on show and to the list, and does
/// what its buttons offer. What is said is the business of the table (NoticeTable.h).
///
/// A notice about a fetch goes when a fetch brings a picture, when another camera is chosen, or
/// when the user closes it; closed, it does not come back as long as each fetch ends in the same
/// way. One about the list or a file stays so long, too, but for ten seconds at the least.
class CameraNotices : public QObject
{
    Q_OBJECT

public:
    static constexpr int ReadingMs = 10'000;

    /// All of them live as long. Its dialogs belong to the viewer's window.
    CameraNotices(WebCam& cam, CamList& list, Favourites& favourites, QObject* parent);

    /// The user has chosen the camera of `key`.
    void cameraChosen(const QString& key);

    /// Something was done that `message` tells of; `subject` is what its action needs: the key of
    /// the first camera added, or the path of the file saved.
    void tell(const Notice::Message& message, const QString& subject = {});

signals:
    /// The camera of `key` should be shown.
    void CameraWanted(const QString& key);
    /// The list should be seen.
    void ListWanted();
    /// What the directory has not got should be offered anew.
    void OfferWanted();

private:
    void fetchEnded(const FetchOutcome& outcome);
    void act(NoticeAction action);
    void replaceKey(const QString& newKey);
    void signIn();

    WebCam& m_cam;
    CamList& m_list;
    Favourites& m_favourites;
    /// While it runs, what was told is being read.
    Timer m_tmrRead;
    /// Of the fetch that the notice is about.
    FetchOutcome m_outcome;
    bool m_isAboutFetch = false;
    /// It says that refreshing has stopped.
    bool m_isAboutStop = false;
    QString m_subject;
    /// The sentence that the user has closed.
    QString m_closed;
};
