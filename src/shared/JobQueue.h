#pragma once

#include "shared/Job.h"

#include <deque>
#include <memory>

/// The viewer's long work, one piece at a time: what would start while another runs waits its
/// turn, in the order of asking.
class JobQueue : public QObject
{
    Q_OBJECT

public:
    explicit JobQueue(QObject* parent);
    ~JobQueue() override;

    /// Begins `work` at once, within this call, where nothing runs; else when all that was asked
    /// for before is over.
    void enqueue(std::unique_ptr<Job> work);

    /// Whether something runs.
    bool isBusy() const { return !m_works.empty(); }

    /// Cancels `work`, be it running or waiting; what waits behind it gets its turn.
    void drop(Job* work);

    /// Cancels everything, for the end of the program. Nothing begins any more.
    void shutDown();

signals:
    /// The last work is over. Not at the end of the program.
    void Idle();

private:
    void beginFirst();
    void remove(Job* work);

    /// The first one runs.
    std::deque<std::unique_ptr<Job>> m_works;
    bool m_shutDown = false;
};
