#include "shell/notices/CameraNotices.h"

#include "cameras/CameraKey.h"
#include "camlist/CamList.h"
#include "camlist/Favourites.h"
#include "shell/notices/frmSignIn.h"
#include "viewer/WebCam.h"
#include "widgets/OpenAddress.h"

#include <QFileInfo>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The key of the camera of `key` at another address. Its extra header, which may be a secret,
/// goes along to the same host alone.
QString movedKey(const QString& key, const QString& address)
{
    const auto [oldAddress, extraHeader] = splitCameraKey(key);
    const bool isSameHost = QUrl(webAddressOf(oldAddress)).host() == QUrl(address).host();
    return joinCameraKey(withoutHttpScheme(address), isSameHost ? extraHeader : QString());
}

} // namespace

CameraNotices::CameraNotices(WebCam& cam, CamList& list, Favourites& favourites, QObject* parent)
    : QObject(parent)
    , m_cam(cam)
    , m_list(list)
    , m_favourites(favourites)
    , m_tmrRead(u"tmrRead"_s, ReadingMs, this)
{
    connect(&m_tmrRead, &Timer::Tick, this, [this] { m_tmrRead.setEnabled(false); });
    connect(&m_cam, &WebCam::Outcome, this, &CameraNotices::fetchEnded);
    connect(&m_cam, &WebCam::Stalled, this, [this](bool stalled) {
        if (!stalled && m_isAboutStop)
            m_cam.notice().dismiss();
    });
    connect(&m_cam.notice(), &Notice::Chosen, this,
            [this](int id) { act(static_cast<NoticeAction>(id)); });
    connect(&m_cam.notice(), &Notice::Closed, this,
            [this](const QString& sentence) { m_closed = sentence; });
    connect(&m_cam, &WebCam::Saved, this,
            [this](const QString& path) { tell(noticeOfSave(path), path); });
    connect(&m_cam, &WebCam::NotSaved, this, [this](const QString& path, const QString& reason) {
        tell(noticeOfSave(path, reason), path);
    });
    connect(&m_list, &CamList::Removed, this,
            [this](const QString& name) { tell(noticeOfRemoval(name)); });
    connect(&m_list, &CamList::Reloaded, this,
            [this](qsizetype cameras) { tell(noticeOfReload(cameras)); });
    connect(&m_list, &CamList::Added, this,
            [this](qsizetype added, qsizetype refused, const QString& firstKey) {
                tell(noticeOfAddition(added, refused), firstKey);
            });
    connect(&m_list, &CamList::Exported, this, [this](const QString& path, const QString& reason) {
        tell(noticeOfSave(path, reason), path);
    });
    connect(&m_list, &CamList::KeptBeside, this,
            [this](const QString& path) { tell(noticeOfKeptList(path), path); });
}

void CameraNotices::cameraChosen(const QString& key)
{
    if (!m_isAboutFetch || comparableKey(key) == comparableKey(m_outcome.camera))
        return;
    m_cam.notice().dismiss();
    m_closed.clear();
}

void CameraNotices::tell(const Notice::Message& message, const QString& subject)
{
    m_isAboutFetch = false;
    m_isAboutStop = false;
    m_subject = subject;
    m_tmrRead.restart();
    m_cam.notice().tell(message);
}

void CameraNotices::fetchEnded(const FetchOutcome& outcome)
{
    const Notice::Message message =
        noticeOf(outcome, m_cam.isStalled(), m_list.has(outcome.camera));
    if (message.sentence.isEmpty()) {
        m_closed.clear();
        if (m_isAboutFetch || !m_tmrRead.Enabled())
            m_cam.notice().dismiss();
        return;
    }
    if (message.sentence == m_closed)
        return;
    m_outcome = outcome;
    m_isAboutFetch = true;
    m_isAboutStop = m_cam.isStalled();
    m_cam.notice().tell(message);
}

void CameraNotices::act(NoticeAction action)
{
    switch (action) {
    case NoticeAction::KeepRefreshing:
        m_cam.setKeepRefreshing(true);
        break;
    case NoticeAction::Resume:
        m_cam.resumeRefreshing();
        break;
    case NoticeAction::UseNewAddress:
        replaceKey(movedKey(m_outcome.camera, m_outcome.address));
        break;
    case NoticeAction::Follow:
        m_cam.follow(m_outcome.address);
        break;
    case NoticeAction::SignIn:
        signIn();
        break;
    case NoticeAction::TryAgain:
        m_cam.Refresh();
        break;
    case NoticeAction::EditCamera:
        m_list.edit(m_outcome.camera);
        break;
    case NoticeAction::OpenInBrowser:
        m_cam.OpenWeb(webAddressOf(splitCameraKey(m_outcome.camera).address));
        break;
    case NoticeAction::Undo:
        m_list.undo();
        break;
    case NoticeAction::Show:
        emit ListWanted();
        m_list.select(m_subject);
        break;
    case NoticeAction::OpenFolder:
        openFolder(QFileInfo(m_subject).absolutePath());
        break;
    case NoticeAction::OfferAgain:
        emit OfferWanted();
        break;
    }
}

/// Wherever the camera is kept, and in what is on show.
void CameraNotices::replaceKey(const QString& newKey)
{
    m_list.changeKey(m_outcome.camera, newKey);
    m_favourites.changeKey(m_outcome.camera, newKey);
    emit CameraWanted(newKey);
}

void CameraNotices::signIn()
{
    const QString address = splitCameraKey(m_outcome.camera).address;
    auto* dialog = new frmSignIn(m_outcome.host, isSecureAddress(address), m_cam.window());
    connect(dialog, &frmSignIn::SignedIn, this,
            [this, address](const QString& header) { replaceKey(joinCameraKey(address, header)); });
    dialog->open();
}
