#pragma once

#include "shell/parts/MainMenu.h"

#include <QObject>

class WebCam;

/// The VIEW section of pref.ini: which menu checks it keeps, and whether the viewer keeps
/// refreshing; and from its WINDOW section, whether pictures keep their proportions. What a check
/// switches is its owner's business: Read says that it has to be switched.
class ViewPreferences : public QObject
{
    Q_OBJECT

public:
    ViewPreferences(MainMenu& menu, WebCam& viewer, QObject* parent);

    /// Reads LIST, TB, GOTO, NEW, TRAY, ONTOP, OSIZE, KEEP and PROPORTIONS from the ini file at
    /// `path`, in this order, and applies each. A stored text that is no truth value leaves its
    /// check and what it switches as they were; only an unreadable TRAY turns the tray icon on, as
    /// it always did.
    void load(const QString& path);

    /// Writes LIST, TB, GOTO, NEW, TRAY, OSIZE, ONTOP, in this order, and KEEP and PROPORTIONS
    /// while they are on.
    void save(const QString& path) const;

signals:
    /// What `entry` switches is on, or off. Its check says so already.
    void Read(MainMenu::Entry entry, bool on);

private:
    MainMenu& m_menu;
    WebCam& m_viewer;
};
