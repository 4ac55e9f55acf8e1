#include "viewer/WorkQueue.h"

#include <algorithm>

WorkQueue::WorkQueue(QObject* parent)
    : QObject(parent)
{
}

WorkQueue::~WorkQueue()
{
    shutDown();
}

void WorkQueue::enqueue(std::unique_ptr<LongWork> work)
{
    if (m_shutDown)
        return;
    auto* const added = work.get();
    added->setParent(this); // so that its timers are found from above
    connect(added, &LongWork::Finished, this, [this, added] { remove(added); });
    m_works.push_back(std::move(work));
    if (m_works.size() == 1)
        beginFirst();
}

void WorkQueue::drop(LongWork* work)
{
    const auto isIt = [work](const auto& one) { return one.get() == work; };
    if (std::none_of(m_works.begin(), m_works.end(), isIt))
        return;
    work->cancel();
    remove(work);
}

void WorkQueue::shutDown()
{
    m_shutDown = true;
    while (!m_works.empty())
        drop(m_works.back().get());
}

/// The work may be in the middle of its last signal: it lives on until events run.
void WorkQueue::remove(LongWork* work)
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

void WorkQueue::beginFirst()
{
    if (!m_shutDown && !m_works.empty())
        m_works.front()->begin();
}
