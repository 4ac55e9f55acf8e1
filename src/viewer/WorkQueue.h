#pragma once

#include "viewer/LongWork.h"

#include <deque>
#include <memory>

/// The viewer's long work, one piece at a time: what would start while another runs waits its
/// turn, in the order of asking.
class WorkQueue : public QObject
{
    Q_OBJECT

public:
    explicit WorkQueue(QObject* parent);
    ~WorkQueue() override;

    /// Begins `work` at once, within this call, where nothing runs; else when all that was asked
    /// for before is over.
    void enqueue(std::unique_ptr<LongWork> work);

    /// Whether something runs.
    bool isBusy() const { return !m_works.empty(); }

    /// Cancels `work`, be it running or waiting; what waits behind it gets its turn.
    void drop(LongWork* work);

    /// Cancels everything, for the end of the program. Nothing begins any more.
    void shutDown();

signals:
    /// The last work is over. Not at the end of the program.
    void Idle();

private:
    void beginFirst();
    void remove(LongWork* work);

    /// The first one runs.
    std::deque<std::unique_ptr<LongWork>> m_works;
    bool m_shutDown = false;
};
