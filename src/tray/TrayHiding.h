#pragma once

#include "shared/Timer.h"
#include "tray/frmTray.h"

#include <QObject>

class QAction;

/// The main window and the tray: the icon there goes with the check of a menu entry, a click on
/// it brings the window back, and while a person can reach it, minimising hides the window.
/// Without a tray on the desktop the window minimises as any other, and one that is hidden when
/// the tray goes comes back by itself.
class TrayHiding : public QObject
{
    Q_OBJECT

public:
    /// Owned by `form`. `mnuViewTray`, which lives as long, adds and removes the icon when it is
    /// triggered.
    TrayHiding(QWidget& form, QAction& mnuViewTray);

    /// Adds the icon as soon as the form has been painted, or has not been for a while: what the
    /// system does for an icon takes longer than the form itself.
    void addIconSoon();

    /// Closes the window behind the icon, and so takes the icon away.
    void unload();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addIcon();
    void hideMinimised();
    void showForm();
    void tick();
    void updateTimer();

    QWidget& m_form;
    frmTray m_frmTray;
    Timer m_tmrTray;
    bool m_iconWanted = false;
    bool m_formHidden = false;
};
