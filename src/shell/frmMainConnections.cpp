// The parts of the main window, and what they tell each other.

#include "camlist/CamList.h"
#include "camlist/Favourites.h"
#include "camlist/frmMan.h"
#include "instance/FileInbox.h"
#include "shared/BuildSettings.h"
#include "shared/HelpPages.h"
#include "shell/OutsideInput.h"
#include "shell/SecondaryWindows.h"
#include "shell/ViewPreferences.h"
#include "shell/frmMain.h"
#include "shell/parts/FavouritesMenu.h"
#include "shell/parts/FullScreen.h"
#include "shell/parts/GotoBar.h"
#include "shell/parts/LeftPanel.h"
#include "shell/parts/MainArea.h"
#include "tray/TrayHiding.h"
#include "viewer/WebCam.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>

#include <utility>

using namespace Qt::Literals::StringLiterals;

void frmMain::createParts()
{
    m_area = new MainArea(m_folders.application, *m_menu, this);
    m_left = m_area->left();
    m_cam = m_area->cam();
    m_cmbUrl = m_area->cmbUrl();
    CamList* list = &m_left->cList();
    setCentralWidget(m_area);

    connect(list, &CamList::Click, this,
            [this](const QString&, const QString& key) { openCamera(key); });
    m_cam->setCameraNames([list](const QString& key) { return list->nameOf(key); });
    connect(list, &CamList::AddFavorite, m_favourites, &Favourites::add);
    createInbox();
    connect(m_cmbUrl, &GotoBar::CameraChosen, this, &frmMain::showCamera);
    connect(m_cam, &WebCam::CameraShown, m_cmbUrl, &GotoBar::mirror);
    connect(m_cam, &WebCam::CameraShown, list, &CamList::followCamera);
    m_cmbUrl->setFocus();

    auto* outside = new OutsideInput(this);
    connect(outside, &OutsideInput::AddressGiven, m_cmbUrl, &GotoBar::enterText);
    connect(outside, &OutsideInput::PictureGiven, m_cam, &WebCam::openPicture);
    connect(outside, &OutsideInput::FileGiven, m_inbox, &FileInbox::receive);

    m_windows = new SecondaryWindows(this, m_folders.application);
    connect(m_windows, &SecondaryWindows::Preview, this, &frmMain::openCamera);
    connect(m_windows, &SecondaryWindows::Import, list, &CamList::LoadFile);
    connect(m_windows, &SecondaryWindows::Export, list, &CamList::ExportFile);
    connect(m_left, &LeftPanel::Submitted, m_windows, &SecondaryWindows::submit);
}

/// `txtCom` shows the last file that came. It is never visible, never has the keyboard and is the
/// window's only child of its kind; the window is neither restored nor raised. One that is not in
/// front says in the task bar that it has something to show.
void frmMain::createInbox()
{
    m_inbox = new FileInbox(this);
    auto* txtCom = new QLineEdit(this);
    txtCom->setObjectName(u"txtCom"_s);
    txtCom->setAccessibleName(tr("Files to open"));
    txtCom->hide();
    connect(m_inbox, &FileInbox::Received, txtCom, &QLineEdit::setText);
    connect(m_inbox, &FileInbox::Received, this, [this] { QApplication::alert(this); });
    connect(m_inbox, &FileInbox::FileWaits, this, [this] {
        if (!m_cam->isBusy())
            openFile(m_inbox->takeNext());
    });
    connect(m_cam, &WebCam::Idle, m_inbox, &FileInbox::wake);
}

void frmMain::connectMenus()
{
    using enum MainMenu::Entry;
    const auto on = [this](MainMenu::Entry entry, auto&& handler) {
        connect(m_menu->entry(entry), &QAction::triggered, this,
                std::forward<decltype(handler)>(handler));
    };
    on(mnuOptInt, [this] { m_windows->showInternetList(isChecked(mnuOptOnTop)); });
    on(mnuOptImport, [this] { m_windows->askForList(); });
    on(mnuOptReload, [this] { m_left->cList().Reload(); });
    on(mnuOptExport, [this] { m_windows->askForExport(); });
    on(mnuOptExit, [this] { close(); });
    on(mnuOptExitWO, [this] { askExitWithoutSaving(); });
    on(mnuFavMan, [this] { (new frmMan(m_favourites, this))->open(); });
    on(mnuViewTb, [this] { m_area->switchToolBar(); });
    for (const auto entry :
         {mnuOptOnTop, mnuViewList, mnuViewGoto, mnuViewNew, mnuViewOSize, mnuViewProp})
        on(entry, [this, entry](bool checked) { apply(entry, checked); });
    on(mnuViewGoto, [this](bool checked) {
        if (checked)
            m_cmbUrl->setFocus();
    });
    auto* fullScreen = new FullScreen(*this, *m_area);
    on(mnuViewFull, [fullScreen] { fullScreen->toggle(); });
    addAction(m_menu->entry(mnuViewFull)); // its key also works without the menu bar
    on(mnuHelpAb, [this] { m_windows->showAbout(isChecked(mnuOptOnTop)); });
    on(mnuHelpH, [this] { openHelp(helpPage(), StartHelpPage); });
    connect(m_left, &LeftPanel::HeaderHelpWanted, this,
            [this] { openHelp(headerHelpPage(), HeaderHelpPage); });

    auto* mirror = new FavouritesMenu(m_favourites, m_menu->favourites());
    connect(mirror, &FavouritesMenu::Opened, this, &frmMain::openCamera);

    m_tray = new TrayHiding(*this, *m_menu->entry(mnuViewTray));
    m_preferences = new ViewPreferences(*m_menu, *m_cam, this);
    connect(m_preferences, &ViewPreferences::Read, this, &frmMain::apply);
}
