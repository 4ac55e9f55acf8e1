// One long work at a time, in the order of asking.
#include "shared/JobQueue.h"

#include <memory>
#include <utility>

namespace {

class Work : public Job
{
public:
    Work(QString name, QStringList& log)
        : m_name(std::move(name))
        , m_log(log)
    {
    }
    ~Work() override { m_log << m_name + " gone"; }
    void begin() override { m_log << m_name + " begins"; }
    void cancel() override { m_log << m_name + " cancelled"; }
    void end() { emit Finished(); }

private:
    QString m_name;
    QStringList& m_log;
};

} // namespace

class JobQueueTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        queue = std::make_unique<JobQueue>(nullptr);
        log.clear();
    }

    void theSecondWaitsForTheFirst()
    {
        auto* a = add("a");
        auto* b = add("b");
        QCOMPARE(log, QStringList({"a begins"}));
        QVERIFY(queue->isBusy());

        a->end();
        QCOMPARE(log, QStringList({"a begins", "b begins"}));
        letGo();
        QCOMPARE(log.takeLast(), "a gone");

        b->end();
        QVERIFY(!queue->isBusy());
        letGo();
        QCOMPARE(log, QStringList({"a begins", "b begins", "b gone"}));
    }

    void droppingTheRunningOneStartsTheNext()
    {
        auto* a = add("a");
        add("b");
        queue->drop(a);
        QCOMPARE(log, QStringList({"a begins", "a cancelled", "b begins"}));
    }

    void droppingAWaitingOneLeavesTheRunningOne()
    {
        auto* a = add("a");
        auto* b = add("b");
        add("c");
        queue->drop(b);
        QCOMPARE(log, QStringList({"a begins", "b cancelled"}));
        queue->drop(b);
        QCOMPARE(log.size(), 2);
        a->end();
        QCOMPARE(log.last(), "c begins");
    }

    void afterShutDownNothingBegins()
    {
        add("a");
        add("b");
        queue->shutDown();
        QCOMPARE(log, QStringList({"a begins", "b cancelled", "a cancelled"}));
        QVERIFY(!queue->isBusy());
        add("c");
        QVERIFY(!log.contains("c begins"));
    }

    void isIdleWhenTheLastOneIsOver()
    {
        QSignalSpy idle(queue.get(), &JobQueue::Idle);
        auto* a = add("a");
        auto* b = add("b");
        a->end();
        QCOMPARE(idle.count(), 0);
        connect(queue.get(), &JobQueue::Idle, this, [&] { QVERIFY(!queue->isBusy()); });
        b->end();
        QCOMPARE(idle.count(), 1);
        queue->drop(add("c"));
        QCOMPARE(idle.count(), 2);
        add("d");
        queue->shutDown();
        QCOMPARE(idle.count(), 2);
    }

private:
    Work* add(const QString& name)
    {
        auto work = std::make_unique<Work>(name, log);
        auto* const added = work.get();
        queue->enqueue(std::move(work));
        return added;
    }
    static void letGo() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    /// Outlives the works, which go only when events run.
    QStringList log;
    std::unique_ptr<JobQueue> queue;
};

QTEST_GUILESS_MAIN(JobQueueTest)
#include "tst_JobQueue.moc"
