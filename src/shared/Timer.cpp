#include "shared/Timer.h"

Timer::Timer(const QString& name, int intervalMs, QObject* parent)
    : QObject(parent)
{
    setObjectName(name);
    m_timer.setInterval(intervalMs);
    connect(&m_timer, &QTimer::timeout, this, &Timer::Tick);
}

void Timer::setEnabled(bool on)
{
    if (on == m_timer.isActive())
        return;
    if (on)
        m_timer.start();
    else
        m_timer.stop();
}

void Timer::elapse()
{
    if (!m_timer.isActive())
        return;
    m_timer.start();
    emit Tick();
}
