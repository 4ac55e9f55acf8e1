#pragma once

#include "viewer/history/PlayJob.h"

#include <QObject>
#include <QPointer>

class History;
class ToolBar;
class JobQueue;

/// Plays the history as a movie: starts and stops the one PlayJob that there may be, and decides
/// which buttons rest meanwhile. Shows nothing itself.
class Player : public QObject
{
    Q_OBJECT

public:
    Player(const History& history, ToolBar& tbMain, JobQueue& queue, QObject* parent);

    /// Withdraws any StopPlay, then plays with `delay` seconds between two frames.
    void start(float delay);

    /// Plays from entry 1. Of an empty history nothing is played, and the buttons are enabled
    /// again; else all but Stop Movie are disabled, and stay so. While other long work runs it
    /// waits for its turn; a play under way starts again from entry 1.
    /// Kept: a StopPlay that nobody has withdrawn ends the play before its first frame.
    void Play();

    /// Sets StopPlay: a play under way ends with the next event, before its next frame; one that
    /// still waits for its turn does not come about.
    void stop();

    /// Whether a play runs, or waits for its turn, that has not been stopped.
    bool isPlaying() const { return m_run && !m_state.StopPlay; }

    /// For tests that move time.
    void setClock(const Clock& clock) { m_state.clock = clock; }

signals:
    /// Entry `n`, which the history has, is to be shown.
    void FrameDue(int n);

private:
    void withdraw();

    const History& m_history;
    ToolBar& m_tbMain;
    JobQueue& m_queue;
    PlayState m_state;
    /// Running or waiting for its turn.
    QPointer<PlayJob> m_run;
};
