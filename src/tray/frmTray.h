#pragma once

#include "tray/modSysTray.h"

#include <QWidget>

/// The window behind the tray icon, never seen by anybody: it stands for the main window there,
/// bears the icon's picture as its own window icon, and takes the icon away when it is closed.
class frmTray : public QWidget
{
    Q_OBJECT

public:
    explicit frmTray(const QIcon& icon);

    modSysTray& sysTray() { return m_sysTray; }
    const modSysTray& sysTray() const { return m_sysTray; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    modSysTray m_sysTray;
};
