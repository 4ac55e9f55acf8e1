#include "shell/frmMain.h"

#include "camlist/CamList.h"
#include "camlist/Favourites.h"
#include "instance/CommandLine.h"
#include "instance/FileInbox.h"
#include "settings/LanguageCaptions.h"
#include "shared/AppFolder.h"
#include "shared/BuildSettings.h"
#include "shared/HelpPages.h"
#include "shell/LastSave.h"
#include "shell/SecondaryWindows.h"
#include "shell/ViewPreferences.h"
#include "shell/WindowPreferences.h"
#include "shell/notices/CameraNotices.h"
#include "shell/parts/GotoBar.h"
#include "shell/parts/LeftPanel.h"
#include "shell/parts/MainArea.h"
#include "tray/TrayHiding.h"
#include "viewer/WebCam.h"
#include "widgets/FirstPaint.h"
#include "widgets/MessageQueue.h"
#include "widgets/OpenOrTell.h"
#include "widgets/SymbolIcon.h"
#include "widgets/Topmost.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QScreen>
#include <QThread>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize MainWindowSize(1'120, 640);
/// More than the window manager's frame and caption take.
constexpr QSize RoomForFrame(20, 60);

} // namespace

frmMain::frmMain(const Folders& folders, const QString& commandLine)
    : m_folders(folders)
    , m_menu(new MainMenu(menuBar()))
    , m_favourites(new Favourites(this))
    , m_messages(new MessageQueue(this))
{
    setObjectName(u"frmMain"_s);
    setWindowTitle(u"Pevora"_s);
    // Drawn in four sizes, up to 128 pixels, for the task bar and the frame, which can wait.
    connect(new FirstPaint(*this), &FirstPaint::Over, this,
            [this] { setWindowIcon(symbolIcon(u"pevora"_s)); });
    createParts();
    connectMenus();
    connect(qApp, &QGuiApplication::commitDataRequest, this, &frmMain::shutDown);
    resize(MainWindowSize.boundedTo(screen()->availableSize() - RoomForFrame));
    m_windowPreferences = new WindowPreferences(*this, *m_area, m_left->cList());
    startUp(commandLine);
}

frmMain::~frmMain() = default;

/// Switches what the check of `entry` stands for.
void frmMain::apply(MainMenu::Entry entry, bool on)
{
    switch (entry) {
    case MainMenu::mnuOptOnTop:
        setTopmost(*this, on);
        m_windows->setListTopmost(on);
        break;
    case MainMenu::mnuViewTray:
        if (on)
            m_tray->addIconSoon();
        break;
    case MainMenu::mnuViewList:
        m_area->showList(on);
        break;
    case MainMenu::mnuViewTb:
        m_cam->setShowToolBar(on);
        break;
    case MainMenu::mnuViewGoto:
        m_area->showGotoBar(on);
        break;
    case MainMenu::mnuViewNew:
        m_cam->setNewOnly(on);
        break;
    case MainMenu::mnuViewOSize:
        m_cam->setOriginalSize(on);
        break;
    case MainMenu::mnuViewProp:
        m_cam->setKeepProportions(on);
        break;
    default:
        break;
    }
}

bool frmMain::isChecked(MainMenu::Entry entry) const
{
    return m_menu->entry(entry)->isChecked();
}

/// The order is fixed: camera list, command line, captions, view preferences, favourites.
void frmMain::startUp(const QString& commandLine)
{
    m_left->cList().LoadFile();
    // What the start itself loads is no news.
    m_notices = new CameraNotices(*m_cam, m_left->cList(), *m_favourites, this);
    connect(m_notices, &CameraNotices::CameraWanted, this, &frmMain::openCamera);
    connect(m_notices, &CameraNotices::ListWanted, this, &frmMain::showListPage);
    connect(m_notices, &CameraNotices::OfferWanted, m_windows, &SecondaryWindows::submitFailed);
    connect(m_windows, &SecondaryWindows::OfferFailed, m_notices,
            [this](const QStringList& names, const QString& reason) {
                m_notices->tell(noticeOfFailedOffers(names, reason));
            });
    openFile(readCommandLine(commandLine));
    applyCaptions();
    m_preferences->load(preferencesPath());
    m_windowPreferences->load(preferencesPath());
    m_favourites->load(preferencesPath());
}

void frmMain::openFile(const CommandLineFile& file)
{
    switch (file.kind) {
    case CommandLineFile::Kind::Movie:
        m_cam->LoadMovie(file.name);
        break;
    case CommandLineFile::Kind::CameraList:
        m_left->cList().LoadFile(file.name);
        break;
    case CommandLineFile::Kind::None:
        break;
    }
}

void frmMain::applyCaptions()
{
    const QString folder = languageFolder(m_folders.application, m_folders.program);
    // Kept: this path is built without a look at the folder's last character, so that at the root
    // of a drive it has two separators.
    if (!folder.isEmpty())
        ApplyLanguageCaptions(*this, folder + "/lan.ini"_L1);
    m_menu->assignAccessKeys();
}

/// Shows the camera of `key`, chosen elsewhere than in the goto bar, which stands for it.
void frmMain::openCamera(const QString& key)
{
    m_cmbUrl->showNow(key);
    showCamera(key);
}

void frmMain::showCamera(const QString& key)
{
    m_notices->cameraChosen(key);
    m_left->cList().select(key);
    m_left->cList().followCamera(key);
    m_cam->showCamera(key);
}

void frmMain::showListPage()
{
    auto* list = m_menu->entry(MainMenu::mnuViewList);
    if (list->isChecked())
        m_left->setShown(true);
    else
        list->trigger();
}

QString frmMain::preferencesPath() const
{
    return pathInFolder(m_folders.application, u"pref.ini"_s);
}

void frmMain::openHelp(const QString& site, const QString& page)
{
    openHelpOrTell(site, helpPageLocation(m_folders.program, page), *m_messages);
}

void frmMain::askExitWithoutSaving()
{
    m_messages->ask({QMessageBox::Question, u"Exit Without Saving"_s,
                     u"This option allows you to exit and NOT save the Cam List.\r\n\r\nAre you "
                     "sure you want to exit?"_s},
                    [this] {
                        m_exitWithoutSaving = true;
                        close();
                    });
}

/// Escape that nothing else wanted, in no text box, stops the fetch.
void frmMain::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && !qobject_cast<QLineEdit*>(focusWidget()))
        m_cam->stopFetch();
    else
        QMainWindow::keyPressEvent(event);
}

void frmMain::closeEvent(QCloseEvent* event)
{
    end();
    event->setAccepted(m_ended);
}

void frmMain::shutDown()
{
    m_isAttended = false;
    end();
}

void frmMain::end()
{
    // Writing lets events be handled: one of them may be a signal.
    if (m_ended || m_isSaving)
        return;
    if (!m_lastSave) {
        m_isSaving = true;
        finishWork();
        saveAll();
        m_isSaving = false;
    } else if (m_isAttended) {
        return; // the question is open
    }
    if (!m_lastSave->isDone() && m_isAttended) {
        m_lastSave->ask();
        return;
    }
    if (!m_lastSave->isDone())
        m_lastSave->rescue();
    quit();
}

void frmMain::finishWork()
{
    m_cam->shutDown();
    m_windows->shutDown();
    m_left->cList().endMessages();
    for (const QString& list : m_inbox->close())
        m_left->cList().LoadFile(list);
    // Events run while the preferences are written: no key or click may start anything now.
    setEnabled(false);
}

void frmMain::saveAll()
{
    CamList& list = m_left->cList();
    // No notice is seen any more.
    connect(&list, &CamList::KeptBeside, this, [](const QString& path) {
        qWarning("Another window changed the camera list, too. It is kept as %s.",
                 qUtf8Printable(path));
    });
    m_lastSave = new LastSave(m_folders.application,
                              {*m_preferences, *m_windowPreferences, *m_favourites, list}, *this);
    connect(m_lastSave, &LastSave::Ended, this, &frmMain::quit);
    m_lastSave->savePreferences();
    m_cam->CleanUp();
    m_tray->unload();
    m_lastSave->saveList(m_exitWithoutSaving ? LastSave::List::AsAtStart : LastSave::List::Saved);
}

void frmMain::quit()
{
    m_ended = true;
    if (!m_lastSave->isDone()) {
        hide();
        QCoreApplication::exit(EXIT_FAILURE);
        return;
    }
    QCoreApplication::quit();
    // A window that refused to close would have kept the program without its main window.
    if (QThread::currentThread()->loopLevel() > 0)
        QCoreApplication::exit();
}
