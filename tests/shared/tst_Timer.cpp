#include "shared/Timer.h"

class TimerTest : public QObject
{
    Q_OBJECT
private slots:
    void restsUntilItIsSwitchedOn()
    {
        Timer timer("tmrAny", 1, nullptr);
        QSignalSpy ticks(&timer, &Timer::Tick);
        QVERIFY(!timer.Enabled());
        timer.setEnabled(true);
        QTRY_VERIFY(ticks.count() >= 2);
        timer.setEnabled(false);
        QVERIFY(!timer.Enabled());
    }

    void switchingOnARunningTimerKeepsItsPeriod()
    {
        Timer timer("tmrAny", 60, nullptr);
        QSignalSpy ticks(&timer, &Timer::Tick);
        timer.setEnabled(true);
        // Switched on again every few milliseconds, a timer that restarted would never tick.
        Timer pesterer("tmrOther", 5, nullptr);
        connect(&pesterer, &Timer::Tick, &timer, [&] { timer.setEnabled(true); });
        pesterer.setEnabled(true);
        QTRY_VERIFY(ticks.count() >= 1);
    }

    void elapseTicksOnceAndOnlyWhileOn()
    {
        Timer timer("tmrAny", 60'000, nullptr);
        QSignalSpy ticks(&timer, &Timer::Tick);
        timer.elapse();
        QCOMPARE(ticks.count(), 0);
        timer.setEnabled(true);
        timer.elapse();
        QCOMPARE(ticks.count(), 1);
        QVERIFY(timer.Enabled());
    }
};

QTEST_GUILESS_MAIN(TimerTest)
#include "tst_Timer.moc"
