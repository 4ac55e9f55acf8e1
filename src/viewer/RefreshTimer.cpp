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
    m_tmrRe.setTag(QString::number(DefaultIntervalSeconds));
    connect(&m_tmrRe, &Timer::Tick, this, &RefreshTimer::tick);
}

int RefreshTimer::tagNumber() const
{
    const QString tag = m_tmrRe.Tag();
    return tag.mid(tag.startsWith(u'r') ? 1 : 0).toInt();
}

void RefreshTimer::toggle()
{
    m_pressed = !m_pressed;
    emit PressedChanged(m_pressed);
    setStalled(false);
    if (!m_pressed) {
        // Kept: a Tag that still has its "r" keeps it for the next time.
        emit ToolTip(u"Timer"_s);
        m_tmrRe.setEnabled(false);
        return;
    }
    // Kept: only this text begins with "Timer: "; the running countdown's does not.
    emit ToolTip("Timer: "_L1 + refreshingIn(tagNumber()));
    if (!m_tmrRe.Tag().startsWith(u'r'))
        m_tmrRe.setTag(u'r' + m_tmrRe.Tag());
    m_tmrRe.setEnabled(true);
}

void RefreshTimer::setInterval(int seconds)
{
    m_tmrRe.setTag(QString::number(seconds));
}

void RefreshTimer::tick()
{
    if (m_tmrRe.Tag().startsWith(u'r')) {
        m_refreshCount = 0;
        m_tmrRe.setTag(m_tmrRe.Tag().mid(1));
    }
    ++m_refreshCount;
    if (m_refreshCount >= tagNumber()) {
        m_refreshCount = 0;
        // Off before the fetch starts: one that fails at once may switch it on again.
        m_tmrRe.setEnabled(false);
        emit RefreshDue();
    }
    if (m_pressed)
        emit ToolTip(refreshingIn(tagNumber() - m_refreshCount));
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
    emit Stalled(stalled);
}
