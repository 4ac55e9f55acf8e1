#include "platform/TerminationSignal.h"
#include "support/Rows.h"

#include <csignal>
#include <memory>

namespace {

volatile std::sig_atomic_t formerHandlerRuns = 0;

void formerHandler(int)
{
    formerHandlerRuns = formerHandlerRuns + 1;
}

} // namespace

class TerminationSignalTest : public QObject
{
    Q_OBJECT
private slots:
    void everySignalIsHeard_data()
    {
        const Rows<int> row("number");
        row("SIGTERM", SIGTERM);
        row("SIGINT", SIGINT);
        row("SIGHUP", SIGHUP);
    }

    void everySignalIsHeard()
    {
        QFETCH(int, number);
        // Where the test runner ignores it, the object would leave it ignored.
        const auto former = std::signal(number, SIG_DFL);
        {
            TerminationSignal termination;
            QSignalSpy received(&termination, &TerminationSignal::Received);
            QCOMPARE(std::raise(number), 0);
            QTRY_COMPARE(received.count(), 1);
            QCOMPARE(std::raise(number), 0);
            QTRY_COMPARE(received.count(), 2);
        }
        std::signal(number, former);
    }

    void itIsHeardInTheEventLoopOnly()
    {
        TerminationSignal termination;
        QSignalSpy received(&termination, &TerminationSignal::Received);
        errno = ERANGE;
        std::raise(SIGTERM);
        // The handler changes nothing that the code it interrupts may be looking at.
        QCOMPARE(errno, ERANGE);
        QCOMPARE(received.count(), 0);
        QTRY_COMPARE(received.count(), 1);
    }

    void manyQuickSignalsAreHeardAndDoNoHarm()
    {
        TerminationSignal termination;
        QSignalSpy received(&termination, &TerminationSignal::Received);
        std::raise(SIGTERM);
        std::raise(SIGTERM);
        QTRY_VERIFY(received.count() >= 1);
        // More than any socket holds: the handler must not wait for room.
        for (int i = 0; i < 100'000; ++i)
            std::raise(SIGTERM);
        QTRY_VERIFY(received.count() >= 2);
        QCoreApplication::processEvents();
        const auto heard = received.count();
        QCoreApplication::processEvents();
        QCOMPARE(received.count(), heard);
    }

    void theListenerMayEndTheObject()
    {
        auto termination = std::make_unique<TerminationSignal>();
        connect(termination.get(), &TerminationSignal::Received, this,
                [&] { termination.reset(); });
        std::raise(SIGTERM);
        QTRY_VERIFY(!termination);
    }

    void theFormerHandlerReturns()
    {
        const auto former = std::signal(SIGTERM, formerHandler);
        formerHandlerRuns = 0;
        {
            TerminationSignal termination;
            QSignalSpy received(&termination, &TerminationSignal::Received);
            std::raise(SIGTERM);
            QTRY_COMPARE(received.count(), 1);
            QCOMPARE(int(formerHandlerRuns), 0);
        }
        std::raise(SIGTERM);
        QCOMPARE(int(formerHandlerRuns), 1);
        std::signal(SIGTERM, former);
    }

    void anIgnoredSignalStaysIgnored()
    {
        const auto former = std::signal(SIGHUP, SIG_IGN);
        {
            TerminationSignal termination;
            QSignalSpy received(&termination, &TerminationSignal::Received);
            std::raise(SIGHUP);
            // What came after it has been heard, so it would have been heard as well.
            QCoreApplication::processEvents();
            QCOMPARE(received.count(), 0);
            std::raise(SIGTERM);
            QTRY_COMPARE(received.count(), 1);
        }
        std::signal(SIGHUP, former);
    }
};

QTEST_GUILESS_MAIN(TerminationSignalTest)
#include "tst_TerminationSignal.moc"
