#pragma once

#include "shell/parts/MainMenu.h"

#include <QMainWindow>

class CameraNotices;
class FileInbox;
class Favourites;
class GotoBar;
class LastSave;
class LeftPanel;
class MainArea;
class MessageQueue;
class SecondaryWindows;
class TrayHiding;
class ViewPreferences;
class WindowPreferences;
class WebCam;
struct CommandLineFile;

/// The main window. It owns the program's life: brings everything up in a fixed order when it is
/// made, and writes everything back, once, when it closes, however that comes about.
class frmMain : public QMainWindow
{
    Q_OBJECT

public:
    /// Where the program finds and keeps its files.
    struct Folders
    {
        /// The application folder: pref.ini, list.dat, temporary files.
        QString application;
        /// The folder of the executable, where a language file is looked for last. Help pages are
        /// found from here.
        QString program;
    };

    /// `commandLine` is the program's arguments as one text; empty for none.
    frmMain(const Folders& folders, const QString& commandLine);
    ~frmMain() override;

    /// Writes preferences, favourites and the camera list back, cleans up, and ends the program, at
    /// once: for the end of the desktop session and SIGTERM. What cannot be written is copied
    /// elsewhere, see LastSave::rescue(), and the program's exit status is 1 then.
    ///
    /// Closing the window and Exit do the same but for this: what cannot be written is asked about,
    /// and the window stays until that is answered. Whatever comes first counts.
    void shutDown();

    /// Takes the files that other instances hand over. Each is opened when nothing that takes long
    /// runs any more; while the program ends none is taken.
    FileInbox& inbox() { return *m_inbox; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void createParts();
    void createInbox();
    void connectMenus();
    void apply(MainMenu::Entry entry, bool on);
    bool isChecked(MainMenu::Entry entry) const;
    void startUp(const QString& commandLine);
    void openFile(const CommandLineFile& file);
    void applyCaptions();
    void openCamera(const QString& key);
    void showCamera(const QString& key);
    void showListPage();
    void openHelp(const QString& site, const QString& page);
    void askExitWithoutSaving();
    QString preferencesPath() const;
    void end();
    void finishWork();
    void saveAll();
    void quit();

    Folders m_folders;
    MainMenu* m_menu;
    Favourites* m_favourites;
    MessageQueue* m_messages;
    MainArea* m_area;
    LeftPanel* m_left;
    WebCam* m_cam;
    GotoBar* m_cmbUrl;
    FileInbox* m_inbox;
    TrayHiding* m_tray;
    SecondaryWindows* m_windows;
    ViewPreferences* m_preferences;
    WindowPreferences* m_windowPreferences = nullptr;
    CameraNotices* m_notices = nullptr;
    /// Set by Exit Without Saving alone, and never cleared: the camera list on disk is what it was
    /// at the start.
    bool m_exitWithoutSaving = false;
    /// Made when the program ends.
    LastSave* m_lastSave = nullptr;
    bool m_isSaving = false;
    /// Whether somebody is there to be asked.
    bool m_isAttended = true;
    /// The event loop has been asked to end.
    bool m_ended = false;
};
