#include "tray/frmTray.h"

using namespace Qt::Literals::StringLiterals;

frmTray::frmTray(const QIcon& icon)
{
    setObjectName(u"frmTray"_s);
    setWindowIcon(icon);
    setAttribute(Qt::WA_QuitOnClose, false);
    connect(&m_sysTray, &modSysTray::Clicked, this, &frmTray::ShowRequested);
}

void frmTray::closeEvent(QCloseEvent* event)
{
    m_sysTray.RemoveTrayIcon();
    QWidget::closeEvent(event);
}
