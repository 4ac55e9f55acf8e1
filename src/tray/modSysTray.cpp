#include "tray/modSysTray.h"

#include <QApplication>
#include <QMouseEvent>
#include <QSystemTrayIcon>
#include <QWidget>

modSysTray::modSysTray(QObject* parent)
    : QObject(parent)
{
}

modSysTray::~modSysTray() = default;

void modSysTray::AddTrayIcon(QWidget& form, const QString& tip)
{
    if (!m_icon) {
        m_icon = std::make_unique<QSystemTrayIcon>(form.windowIcon());
        m_icon->setToolTip(tip);
        connect(m_icon.get(), &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason == QSystemTrayIcon::Trigger)
                        pressed();
                });
        m_icon->show();
    }
    form.hide();
}

void modSysTray::RemoveTrayIcon()
{
    qApp->removeEventFilter(this);
    m_icon.reset();
}

bool modSysTray::isReachable() const
{
    return m_icon && QSystemTrayIcon::isSystemTrayAvailable();
}

/// Some trays tell of the press, with the button still down: then its release is waited for.
/// Others tell of the whole click.
void modSysTray::pressed()
{
    if (QGuiApplication::mouseButtons() & Qt::LeftButton)
        qApp->installEventFilter(this);
    else
        emit Clicked();
}

bool modSysTray::eventFilter(QObject* watched, QEvent* event)
{
    // The window of the icon has the mouse until all buttons are up, wherever it goes.
    if (event->type() != QEvent::MouseButtonRelease || !watched->isWidgetType())
        return false;
    const auto& release = *static_cast<QMouseEvent*>(event);
    if (release.button() != Qt::LeftButton)
        return false;
    qApp->removeEventFilter(this);
    if (static_cast<QWidget*>(watched)->rect().contains(release.position().toPoint()))
        emit Clicked();
    return false;
}
