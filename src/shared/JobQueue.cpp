#include "shared/JobQueue.h"

#include <algorithm>
#include <utility>

JobQueue::JobQueue(QObject* parent)
    : QObject(parent)
{
}

JobQueue::~JobQueue()
{
    shutDown();
}

void JobQueue::enqueue(std::unique_ptr<Job> work)
{
    if (m_shutDown)
        return;
    auto* const added = work.get();
    added->setParent(this); // so that its timers are found from above
    connect(added, &Job::Finished, this, [this, added] { remove(added); });
    m_works.push_back(std::move(work));
    if (m_works.size() == 1)
        beginFirst();
}

void JobQueue::drop(Job* work)
{
    const auto isIt = [work](const auto& one) { return one.get() == work; };
    if (std::none_of(m_works.begin(), m_works.end(), isIt))
        return;
    work->cancel();
    remove(work);
}

void JobQueue::shutDown()
{
    m_shutDown = true;
    while (!m_works.empty())
        drop(m_works.back().get());
}

/// The work may be in the middle of its last signal: it lives on until events run.
void JobQueue::remove(Job* work)
{
    const auto found = std::find_if(m_works.begin(), m_works.end(),
                                    [work](const auto& one) { return one.get() == work; });
    if (found == m_works.end())
        return;
    const bool ran = found == m_works.begin();
    found->release()->deleteLater();
    m_works.erase(found);
    if (ran)
        beginFirst();
    if (!m_shutDown && m_works.empty())
        emit Idle();
}

void JobQueue::beginFirst()
{
    if (!m_shutDown && !m_works.empty())
        m_works.front()->begin();
}
