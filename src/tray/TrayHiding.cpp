#include "tray/TrayHiding.h"

#include "widgets/SymbolIcon.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int IntervalMs = 2'000;

/// Whether a dialog of `form`, or one of a dialog of it, is open.
bool isBlocked(const QWidget& form)
{
    const QWidget* window = QApplication::activeModalWidget();
    if (window && window->windowModality() == Qt::ApplicationModal)
        return true;
    while (window && window != &form)
        window = window->parentWidget();
    return window != nullptr;
}

} // namespace

TrayHiding::TrayHiding(QWidget& form, QAction& mnuViewTray)
    : QObject(&form)
    , m_form(form)
    , m_frmTray(symbolIcon(u"pevora"_s))
    , m_tmrTray(u"tmrTray"_s, IntervalMs, this)
{
    form.installEventFilter(this);
    connect(&m_frmTray.sysTray(), &modSysTray::Clicked, this, &TrayHiding::showForm);
    connect(&m_tmrTray, &Timer::Tick, this, &TrayHiding::tick);
    connect(&mnuViewTray, &QAction::triggered, this, [this](bool checked) {
        m_iconWanted = false;
        if (checked)
            addIcon();
        else
            m_frmTray.sysTray().RemoveTrayIcon();
        updateTimer();
    });
}

void TrayHiding::addIconSoon()
{
    m_iconWanted = true;
    updateTimer();
}

void TrayHiding::unload()
{
    m_iconWanted = false;
    m_formHidden = false;
    updateTimer();
    m_frmTray.close();
}

void TrayHiding::addIcon()
{
    m_iconWanted = false;
    m_frmTray.sysTray().AddTrayIcon(m_frmTray, u"Pevora"_s);
}

void TrayHiding::tick()
{
    if (m_iconWanted)
        addIcon();
    if (m_formHidden && !m_frmTray.sysTray().isReachable())
        showForm();
    updateTimer();
}

void TrayHiding::updateTimer()
{
    m_tmrTray.setEnabled(m_iconWanted || m_formHidden);
}

bool TrayHiding::eventFilter(QObject* watched, QEvent* event)
{
    // Queued: after what is being painted is on screen, and after Qt has finished the change.
    if (event->type() == QEvent::Paint && m_iconWanted)
        QMetaObject::invokeMethod(this, &TrayHiding::tick, Qt::QueuedConnection);
    else if (event->type() == QEvent::WindowStateChange && m_form.isMinimized())
        QMetaObject::invokeMethod(this, &TrayHiding::hideMinimised, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

void TrayHiding::hideMinimised()
{
    // The icon is there only while the menu's entry is checked.
    if (m_form.isHidden() || !m_form.isMinimized() || !m_frmTray.sysTray().isReachable())
        return;
    // A dialog that blocks the window would stay behind, seen by nobody and blocking it still.
    if (isBlocked(m_form))
        return;
    const bool filledScreen = m_form.isMaximized() || m_form.isFullScreen();
    // A system's window that is made anew is placed anew, unless it is told where.
    const QRect normal = filledScreen ? m_form.normalGeometry() : m_form.geometry();
    m_form.hide();
    // On X11 a window that is minimised no more is mapped at once, hidden or not. So the system's
    // window goes before, and a new one, in its new state from the beginning, takes its place.
    m_form.windowHandle()->destroy();
    m_form.windowHandle()->setWindowStates(Qt::WindowNoState);
    // Kept: the state becomes normal, also that of a window that was maximised before.
    m_form.setWindowState(Qt::WindowNoState);
    if (normal.isValid()) {
        m_form.setGeometry(normal);
        m_form.windowHandle()->setGeometry(normal);
    }
    m_formHidden = true;
    updateTimer();
}

void TrayHiding::showForm()
{
    m_formHidden = false;
    updateTimer();
    m_form.setWindowState(m_form.windowState() & ~Qt::WindowMinimized);
    m_form.show();
    m_form.raise();
    m_form.activateWindow();
    // A message that came meanwhile blocks the window: it must not lie below it.
    if (QWidget* modal = QApplication::activeModalWidget()) {
        modal->raise();
        modal->activateWindow();
    }
}
