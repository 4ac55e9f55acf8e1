#pragma once

#include "shared/Timer.h"

#include <QObject>

/// The refresh countdown: while the timer button is pressed, asks for a fetch every so many
/// seconds. The next countdown begins only when that fetch has ended.
///
/// The Tag of `tmrRe` says how it stands: the interval as decimal text, after an "r" while the next
/// tick is to begin a new countdown. Owns no menu and no button; it says what they should show.
class RefreshTimer : public QObject
{
    Q_OBJECT

public:
    static constexpr int TickMs = 1'000;
    static constexpr int DefaultIntervalSeconds = 30;

    explicit RefreshTimer(QObject* parent);

    /// The timer button is pressed: refreshing is wanted, whether or not it runs just now.
    bool isPressed() const { return m_pressed; }
    /// Presses the released button, releases the pressed one.
    void toggle();

    /// Seconds between two fetches, from -32768 to 32767; 0 or less fetches at every tick. Takes
    /// effect at the next tick; the count goes on.
    void setInterval(int seconds);
    int Interval() const { return m_intervalSeconds; }

    /// Begin a new countdown also after errors and refused answers. Switching it on resumes what
    /// has stopped.
    bool KeepRefreshing() const { return m_keep; }
    void setKeepRefreshing(bool on);

    /// Refreshing has stopped although the button is pressed.
    bool isStalled() const { return m_stalled; }
    /// Begins a new countdown where refreshing has stopped; else nothing.
    void resume();

    /// A fetch is over. `gotBody`: it ended with an answer that had a body.
    void fetchEnded(bool gotBody);
    /// The user has stopped the fetch under way, or there is no camera for the one that was due.
    void fetchStopped();

    /// Stops counting, for the end of the program.
    void shutDown() { m_tmrRe.setEnabled(false); }

signals:
    /// The countdown has run out: fetch the camera again, or answer by fetchStopped().
    void RefreshDue();
    void ToolTip(const QString& text);
    void PressedChanged(bool pressed);
    /// Refreshing has stopped although the button is pressed, or goes on again.
    void Stalled(bool stalled);

private:
    void tick();
    void beginCountdown();
    void setStalled(bool stalled);
    /// Also in the Tag.
    void set(int intervalSeconds, bool beginAnew);

    Timer m_tmrRe;
    int m_intervalSeconds = DefaultIntervalSeconds;
    /// The next tick begins a new countdown.
    bool m_beginAnew = false;
    /// Seconds counted since the last refresh.
    qint16 m_refreshCount = 0;
    bool m_pressed = false;
    bool m_keep = false;
    bool m_stalled = false;
};
