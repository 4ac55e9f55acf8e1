#include "shell/frmMain.h"

#include "camlist/Favourites.h"
#include "camlist/frmMan.h"
#include "settings/Ini.h"
#include "settings/LanguageCaptions.h"
#include "shared/AppFolder.h"
#include "shared/CameraKey.h"
#include "shared/SymbolIcon.h"
#include "shared/Topmost.h"
#include "shell/CommandLine.h"
#include "shell/FavouritesMenu.h"
#include "shell/GotoBar.h"
#include "shell/MainLayout.h"
#include "shell/MainMenu.h"
#include "shell/ViewPreferences.h"
#include "viewer/WebCam.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize DefaultSize(900, 640);
/// More than the window manager's frame and caption take.
constexpr QSize RoomForFrame(20, 60);

} // namespace

frmMain::frmMain(const Folders& folders, const QString& commandLine)
    : m_folders(folders)
    , m_menu(new MainMenu(menuBar()))
    , m_favourites(new Favourites(this))
{
    setObjectName(u"frmMain"_s);
    setWindowTitle(u"Pevora"_s);
    setWindowIcon(symbolIcon(u"pevora"_s));
    createParts();
    connectMenus();
    connect(qApp, &QGuiApplication::commitDataRequest, this, &frmMain::shutDown);
    resize(DefaultSize.boundedTo(screen()->availableSize() - RoomForFrame));
    startUp(commandLine);
}

frmMain::~frmMain() = default;

void frmMain::createParts()
{
    // The parts are placed by the window's own rules, not by a QLayout.
    auto* area = new QWidget(this);
    area->installEventFilter(this);
    m_cam = new WebCam(m_folders.application, area);
    m_cam->setObjectName(u"Cam"_s);
    const auto noName = [](const QString&) { return QString(); };
    m_cmbUrl = new GotoBar({noName, noName}, area);
    setCentralWidget(area);

    connect(m_cmbUrl, &GotoBar::CameraChosen, this, &frmMain::showCamera);
    connect(m_cam, &WebCam::ImageChange, this,
            [this](const QString&, const QString& url) { m_cmbUrl->mirror(url); });
    m_cmbUrl->setFocus();
}

void frmMain::connectMenus()
{
    const auto on = [this](const QString& name, auto&& handler) {
        connect(m_menu->entry(name), &QAction::triggered, this,
                std::forward<decltype(handler)>(handler));
    };
    on(u"mnuOptExit"_s, [this] { close(); });
    on(u"mnuOptExitWO"_s, [this] { askExitWithoutSaving(); });
    on(u"mnuFavMan"_s, [this] { (new frmMan(m_favourites, this))->open(); });
    on(u"mnuOptOnTop"_s, [this](bool checked) { setTopmost(*this, checked); });
    on(u"mnuViewTb"_s, [this] {
        m_cam->setShowToolBar(!m_cam->ShowToolBar());
        m_menu->entry(u"mnuViewTb"_s)->setChecked(m_cam->ShowToolBar());
        layOut();
    });
    on(u"mnuViewGoto"_s, [this](bool checked) {
        showGotoBar(checked);
        if (checked)
            m_cmbUrl->setFocus();
    });
    on(u"mnuViewNew"_s, [this](bool checked) { m_cam->setNewOnly(checked); });
    on(u"mnuViewOSize"_s, [this](bool checked) { m_cam->setOriginalSize(checked); });

    auto* mirror = new FavouritesMenu(m_favourites, m_menu->favourites());
    connect(mirror, &FavouritesMenu::Opened, this, [this](const QString& key) {
        showCamera(key);
        m_cmbUrl->showNow(webAddressOf(m_cam->Url()));
    });

    m_preferences = std::make_unique<ViewPreferences>(
        *m_menu, *m_cam,
        ViewPreferences::Targets{[this](bool shown) { showGotoBar(shown); }, [] {},
                                 [this](bool topmost) { setTopmost(*this, topmost); }});
}

/// The order is fixed: camera list, command line, captions, view preferences, favourites.
void frmMain::startUp(const QString& commandLine)
{
    // The camera list loads here, before the file that was asked for joins it.
    openFile(readCommandLine(commandLine));
    applyCaptions();
    m_preferences->load(preferencesPath());
    m_favourites->load(preferencesPath());
}

/// Camera lists open from here as soon as the program reads them.
void frmMain::openFile(const CommandLineFile& file)
{
    switch (file.kind) {
    case CommandLineFile::Kind::Movie:
        m_cam->LoadMovie(file.name);
        break;
    case CommandLineFile::Kind::CameraList:
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

void frmMain::showGotoBar(bool shown)
{
    m_cmbUrl->setVisible(shown);
    layOut();
}

void frmMain::showCamera(const QString& key)
{
    m_cam->setUrl(key);
    m_cam->Refresh();
}

QString frmMain::preferencesPath() const
{
    return pathInFolder(m_folders.application, u"pref.ini"_s);
}

void frmMain::askExitWithoutSaving()
{
    auto* box = new QMessageBox(
        QMessageBox::Question, u"Exit Without Saving"_s,
        u"This option allows you to exit and NOT save the Cam List.\r\n\r\nAre you sure you want "
        "to exit?"_s,
        QMessageBox::Yes | QMessageBox::No, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this, [this](int answer) {
        if (answer != QMessageBox::Yes)
            return;
        m_exitWithoutSaving = true;
        close();
    });
    box->open();
}

void frmMain::closeEvent(QCloseEvent* event)
{
    shutDown();
    event->accept();
}

void frmMain::shutDown()
{
    if (std::exchange(m_shutDown, true))
        return;
    m_cam->shutDown();
    // Events run while the preferences are written: no key or click may start anything now.
    setEnabled(false);
    m_preferences->save(preferencesPath());
    m_favourites->save(preferencesPath());
    m_cam->CleanUp();
    FlushINI();
    // The camera list is saved here, unless m_exitWithoutSaving is set.
    QCoreApplication::quit();
    // A window that refused to close would have kept the program without its main window.
    if (QThread::currentThread()->loopLevel() > 0)
        QCoreApplication::exit();
}

void frmMain::layOut()
{
    const MainLayout layout = layOutMainWindow({
        .client = centralWidget()->size(),
        .listWidth = 0,
        .gotoBarVisible = !m_cmbUrl->isHidden(),
        .gotoBarHeight = m_cmbUrl->sizeHint().height(),
    });
    m_cam->setGeometry(layout.viewer);
    m_cmbUrl->setGeometry(layout.gotoBar);
}

bool frmMain::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == centralWidget() && event->type() == QEvent::Resize)
        layOut();
    return QMainWindow::eventFilter(watched, event);
}
