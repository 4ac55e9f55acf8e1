#pragma once

#include "shared/Clock.h"
#include "shared/Job.h"
#include "shared/Timer.h"

class History;

/// What a play goes by; it may change while one runs.
struct PlayState
{
    /// Request to end the play; the play withdraws it when it ends.
    bool StopPlay = false;
    /// Seconds between two frames.
    float PlayDelay = 0;
    Clock clock = systemClock;
};

/// One play of the history, from entry 1 on, over and over until StopPlay is set: the loops over
/// the entries, and the pause after each of them (`tmrPlay`). Shows nothing itself.
///
/// Fetches go on and may append entries: each pass reads their number anew, and each entry is
/// looked for as the history is by then. An emptied history is waited for.
class PlayJob : public Job
{
    Q_OBJECT

public:
    /// The longest sleep within a pause, in milliseconds: so often the clock is looked at.
    static constexpr int LongestSleepMs = 1'000;

    /// `history` and `state` outlive it.
    PlayJob(const History& history, PlayState& state);

    void begin() override;
    void cancel() override;

    /// Starts again from entry 1; where it still waits for its turn, that is what it will do.
    void restart();
    /// Cuts the pause short, because StopPlay has been set: the play ends with the next event.
    void hurry();

    /// Whether it has had its turn, and no end yet.
    bool hasBegun() const { return m_runs; }

signals:
    /// Entry `n`, which the history has, is to be shown.
    void FrameDue(int n);

private:
    void next();
    int nextEntry();
    float pauseLeft() const;
    void sleep();

    const History& m_history;
    PlayState& m_state;
    Timer m_tmrPlay;
    bool m_runs = false;
    /// The entry that the pass has come to, and how many there were when it began.
    int m_entry = 0;
    int m_passCount = 0;
    /// When the pause began.
    QDateTime m_start;
};
