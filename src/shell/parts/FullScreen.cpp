#include "shell/parts/FullScreen.h"

#include "shell/parts/MainArea.h"
#include "viewer/WebCam.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QScreen>

FullScreen::FullScreen(QMainWindow& window, MainArea& area)
    : QObject(&window)
    , m_window(window)
    , m_area(area)
{
    window.installEventFilter(this);
}

void FullScreen::toggle()
{
    if (m_state == State::Off)
        enter();
    else
        leave();
}

void FullScreen::enter()
{
    m_focus = m_window.focusWidget();
    m_area.cam()->setFocus();
    m_before = m_window.windowState();
    m_state = State::Asked;
    showAlone(true);
    // Before anybody else's shortcuts.
    QCoreApplication::instance()->installEventFilter(this);
    m_window.setWindowState(m_before | Qt::WindowFullScreen);
}

void FullScreen::leave()
{
    giveBack();
    m_window.setWindowState(m_before);
}

void FullScreen::giveBack()
{
    m_state = State::Off;
    QCoreApplication::instance()->removeEventFilter(this);
    showAlone(false);
    if (m_focus)
        m_focus->setFocus();
}

void FullScreen::showAlone(bool alone)
{
    m_window.menuBar()->setVisible(!alone);
    m_area.showPictureAlone(alone);
}

/// Whether a key of the window itself, not of a menu or dialog of it, is Escape.
bool FullScreen::isEscape(QObject* watched, const QEvent& event) const
{
    if (event.type() != QEvent::ShortcutOverride && event.type() != QEvent::KeyPress)
        return false;
    const auto* widget = qobject_cast<QWidget*>(watched);
    const auto& key = static_cast<const QKeyEvent&>(event);
    return widget && widget->window() == &m_window && key.key() == Qt::Key_Escape &&
           key.modifiers() == Qt::NoModifier;
}

/// A maximised window is restored first, and tells of that: it is there when it fills the screen.
void FullScreen::windowChanged()
{
    if (m_window.isFullScreen() && m_window.size() == m_window.screen()->size())
        m_state = State::On;
    else if (m_state == State::On && !m_window.isFullScreen())
        giveBack();
}

bool FullScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (m_state == State::Off)
        return QObject::eventFilter(watched, event);
    if (watched == &m_window &&
        (event->type() == QEvent::WindowStateChange || event->type() == QEvent::Resize)) {
        windowChanged();
    } else if (isEscape(watched, *event)) {
        // Claimed first, so that it comes as a key and not as a shortcut.
        event->accept();
        if (event->type() == QEvent::KeyPress)
            leave();
        return true;
    }
    return QObject::eventFilter(watched, event);
}
