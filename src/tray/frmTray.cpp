#include "tray/frmTray.h"

using namespace Qt::Literals::StringLiterals;

frmTray::frmTray(const QIcon& icon)
{
    setObjectName(u"frmTray"_s);
    setWindowIcon(icon);
    setAttribute(Qt::WA_QuitOnClose, false);
}

void frmTray::closeEvent(QCloseEvent* event)
{
    m_sysTray.RemoveTrayIcon();
    QWidget::closeEvent(event);
}
