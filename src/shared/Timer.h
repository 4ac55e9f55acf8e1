#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

/// A repeating timer that is switched on and off, with a Tag its owner may keep a text in.
///
/// Every timer of the program is one of these, a child of the control that owns it, under the
/// name that `objectName` bears. That is the seam through which a test moves time: it finds the
/// timer by name and either shortens its Interval or lets one interval pass with `elapse()`.
class Timer : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int Interval READ Interval WRITE setInterval)
    Q_PROPERTY(bool Enabled READ Enabled WRITE setEnabled)
    Q_PROPERTY(QString Tag READ Tag WRITE setTag)

public:
    /// A timer that is off. `intervalMs` is in milliseconds, 0 or more.
    Timer(const QString& name, int intervalMs, QObject* parent);

    /// Milliseconds between two ticks. Setting it on a running timer restarts its period.
    int Interval() const { return m_timer.interval(); }
    void setInterval(int intervalMs) { m_timer.setInterval(intervalMs); }

    /// Switching on a timer that runs leaves its period alone, as switching off one that rests.
    bool Enabled() const { return m_timer.isActive(); }
    void setEnabled(bool on);

    /// Milliseconds until the next tick; -1 while it is off.
    int remainingMs() const { return m_timer.remainingTime(); }

    /// Off and on again: a whole interval from now to the next tick.
    void restart() { m_timer.start(); }

    QString Tag() const { return m_tag; }
    void setTag(const QString& tag) { m_tag = tag; }

    /// Behaves as if the current interval had just run out. Does nothing while the timer is off.
    void elapse();

signals:
    void Tick();

private:
    QTimer m_timer;
    QString m_tag;
};
