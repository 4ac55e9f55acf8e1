#include "viewer/RefreshTimer.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString refreshingIn(int seconds)
{
    return "Refreshing in "_L1 + QString::number(seconds) + " sec(s)"_L1;
}

} // namespace

RefreshTimer::RefreshTimer(QObject* parent)
    : QObject(parent)
    , m_tmrRe(u"tmrRe"_s, TickMs, this)
{
    set(DefaultIntervalSeconds, false);
    connect(&m_tmrRe, &Timer::Tick, this, &RefreshTimer::tick);
}

void RefreshTimer::set(int intervalSeconds, bool beginAnew)
{
    m_intervalSeconds = intervalSeconds;
    m_beginAnew = beginAnew;
    m_tmrRe.setTag((beginAnew ? u"r"_s : QString()) + QString::number(intervalSeconds));
}

void RefreshTimer::toggle()
{
    m_pressed = !m_pressed;
    emit PressedChanged(m_pressed);
    setStalled(false);
    if (!m_pressed) {
        // Kept: a new countdown that no tick has begun yet stays asked for.
        emit ToolTip(u"Timer"_s);
        m_tmrRe.setEnabled(false);
        return;
    }
    beginCountdown();
}

void RefreshTimer::beginCountdown()
{
    // Kept: only this text begins with "Timer: "; the running countdown's does not.
    emit ToolTip("Timer: "_L1 + refreshingIn(m_intervalSeconds));
    set(m_intervalSeconds, true);
    m_tmrRe.setEnabled(true);
}

void RefreshTimer::setKeepRefreshing(bool on)
{
    m_keep = on;
    if (on)
        resume();
}

void RefreshTimer::resume()
{
    if (!m_stalled)
        return;
    setStalled(false);
    beginCountdown();
}

void RefreshTimer::setInterval(int seconds)
{
    set(seconds, false);
}

void RefreshTimer::tick()
{
    if (m_beginAnew) {
        m_refreshCount = 0;
        set(m_intervalSeconds, false);
    }
    ++m_refreshCount;
    if (m_refreshCount >= m_intervalSeconds) {
        m_refreshCount = 0;
        // Off before the fetch starts: one that fails at once may switch it on again.
        m_tmrRe.setEnabled(false);
        emit RefreshDue();
    }
    if (m_pressed && !m_stalled)
        emit ToolTip(refreshingIn(m_intervalSeconds - m_refreshCount));
}

void RefreshTimer::fetchEnded(bool gotBody)
{
    if (!m_pressed)
        return;
    if (gotBody || m_keep)
        m_tmrRe.setEnabled(true);
    setStalled(!m_tmrRe.Enabled());
}

void RefreshTimer::fetchStopped()
{
    setStalled(m_pressed && !m_tmrRe.Enabled());
}

void RefreshTimer::setStalled(bool stalled)
{
    if (m_stalled == stalled)
        return;
    m_stalled = stalled;
    if (stalled)
        emit ToolTip(tr("Refreshing has stopped"));
    else if (m_pressed)
        emit ToolTip(refreshingIn(m_intervalSeconds - m_refreshCount));
    emit Stalled(stalled);
}
