#include "viewer/history/PlayJob.h"

#include "viewer/history/History.h"

#include <algorithm>
#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr float MsPerSecond = 1000;

float secondsSinceMidnight(const QDateTime& time)
{
    return static_cast<float>(time.time().msecsSinceStartOfDay()) / MsPerSecond;
}

} // namespace

PlayJob::PlayJob(const History& history, PlayState& state)
    : m_history(history)
    , m_state(state)
    , m_tmrPlay(u"tmrPlay"_s, 0, this)
{
    connect(&m_tmrPlay, &Timer::Tick, this, [this] {
        if (!m_state.StopPlay && pauseLeft() > 0)
            sleep();
        else
            next();
    });
}

void PlayJob::begin()
{
    m_runs = true;
    if (m_state.StopPlay)
        hurry();
    else
        next();
}

void PlayJob::cancel()
{
    m_runs = false;
    m_tmrPlay.setEnabled(false);
}

void PlayJob::restart()
{
    m_entry = m_passCount = 0;
    if (m_runs)
        next();
}

void PlayJob::hurry()
{
    if (!m_runs)
        return;
    m_tmrPlay.setInterval(0);
    m_tmrPlay.setEnabled(true);
}

void PlayJob::next()
{
    if (m_state.StopPlay) {
        m_state.StopPlay = false;
        cancel();
        emit Finished();
        return;
    }
    if (const int n = nextEntry())
        emit FrameDue(n);
    m_start = m_state.clock();
    if (m_state.StopPlay)
        hurry();
    else if (m_runs)
        sleep();
}

/// The number of the next entry that still is there; 0 where the history has been emptied.
int PlayJob::nextEntry()
{
    const int count = m_history.Count();
    ++m_entry;
    if (m_entry > std::min(m_passCount, count)) {
        m_entry = 1;
        m_passCount = count;
    }
    return m_entry <= count ? m_entry : 0;
}

/// In seconds. Kept: midnight is not allowed for. A pause that spans it lasts until the clock
/// passes the time of its start again, on the next day.
float PlayJob::pauseLeft() const
{
    const QDateTime now = m_state.clock();
    const float passed = secondsSinceMidnight(now) - secondsSinceMidnight(m_start);
    return now.date() > m_start.date() ? -passed : m_state.PlayDelay - passed;
}

void PlayJob::sleep()
{
    const auto ms = static_cast<int>(
        std::clamp(std::ceil(pauseLeft() * MsPerSecond), 1.0F, float(LongestSleepMs)));
    m_tmrPlay.setInterval(ms);
    m_tmrPlay.setEnabled(true);
}
