#pragma once

#include <QObject>

/// A piece of work that takes longer than an event may: it is done in steps that a timer drives,
/// so that events run between two steps and nothing spins. A JobQueue owns it and gives it its
/// turn; each step checks what it reads against the state as it is by then.
class Job : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Its turn has come. Called once. Finished follows, from a later event.
    virtual void begin() = 0;

    /// Ends it where it is, and leaves nothing half done behind. No signal follows. It may still
    /// wait for its turn.
    virtual void cancel() = 0;

signals:
    /// It is over, well or not. The last of its signals, once.
    void Finished();
};
