// One long work at a time, in the order of asking.
#include "viewer/WorkQueue.h"

#include <QtTest/QtTest>

namespace {

class Work : public LongWork
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

class WorkQueueTest : public QObject
{
    Q_OBJECT
private slots:
    void theSecondWaitsForTheFirst();
    void droppingTheRunningOneStartsTheNext();
    void droppingAWaitingOneLeavesTheRunningOne();
    void afterShutDownNothingBegins();

private:
    static Work* add(WorkQueue& queue, const QString& name, QStringList& log)
    {
        auto work = std::make_unique<Work>(name, log);
        auto* const added = work.get();
        queue.enqueue(std::move(work));
        return added;
    }
    static void letGo() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
};

void WorkQueueTest::theSecondWaitsForTheFirst()
{
    QStringList log;
    WorkQueue queue(nullptr);
    auto* a = add(queue, "a", log);
    auto* b = add(queue, "b", log);
    QCOMPARE(log, QStringList({"a begins"}));
    QVERIFY(queue.isBusy());

    a->end();
    QCOMPARE(log, QStringList({"a begins", "b begins"}));
    letGo();
    QCOMPARE(log.takeLast(), "a gone");

    b->end();
    QVERIFY(!queue.isBusy());
    letGo();
    QCOMPARE(log, QStringList({"a begins", "b begins", "b gone"}));
}

void WorkQueueTest::droppingTheRunningOneStartsTheNext()
{
    QStringList log;
    WorkQueue queue(nullptr);
    auto* a = add(queue, "a", log);
    add(queue, "b", log);
    queue.drop(a);
    QCOMPARE(log, QStringList({"a begins", "a cancelled", "b begins"}));
}

void WorkQueueTest::droppingAWaitingOneLeavesTheRunningOne()
{
    QStringList log;
    WorkQueue queue(nullptr);
    auto* a = add(queue, "a", log);
    auto* b = add(queue, "b", log);
    add(queue, "c", log);
    queue.drop(b);
    QCOMPARE(log, QStringList({"a begins", "b cancelled"}));
    queue.drop(b);
    QCOMPARE(log.size(), 2);
    a->end();
    QCOMPARE(log.last(), "c begins");
}

void WorkQueueTest::afterShutDownNothingBegins()
{
    QStringList log;
    WorkQueue queue(nullptr);
    add(queue, "a", log);
    add(queue, "b", log);
    queue.shutDown();
    QCOMPARE(log, QStringList({"a begins", "b cancelled", "a cancelled"}));
    QVERIFY(!queue.isBusy());
    add(queue, "c", log);
    QVERIFY(!log.contains("c begins"));
}

QTEST_GUILESS_MAIN(WorkQueueTest)
#include "tst_WorkQueue.moc"
