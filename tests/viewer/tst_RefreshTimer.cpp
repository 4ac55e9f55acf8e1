#include "support/Rows.h"
#include "support/TimeSeam.h"
#include "viewer/RefreshTimer.h"

/// A countdown whose button, menu and camera are the test's own.
class Countdown : public QObject
{
public:
    Countdown()
    {
        connect(&timer, &RefreshTimer::RefreshDue, this, [this] {
            ++refreshes;
            if (!hasUrl)
                timer.fetchStopped();
        });
        connect(&timer, &RefreshTimer::ToolTip, this, [this](const QString& text) { tip = text; });
        connect(&timer, &RefreshTimer::PressedChanged, this, [this](bool on) { pressed = on; });
        connect(&timer, &RefreshTimer::Stalled, this, [this](bool on) { stalled = on; });
    }

    Timer& tmrRe() { return timerOf(timer, "tmrRe"); }
    void seconds(int count)
    {
        for (int i = 0; i < count; ++i)
            tmrRe().elapse();
    }

    bool hasUrl = true;
    int refreshes = 0;
    bool pressed = false;
    bool stalled = false;
    QString tip;
    RefreshTimer timer{nullptr};
};

class RefreshTimerTest : public QObject
{
    Q_OBJECT
private slots:
    void startsReleasedAtThirtySeconds()
    {
        Countdown c;
        QVERIFY(!c.timer.isPressed());
        QVERIFY(!c.tmrRe().Enabled());
        QCOMPARE(c.tmrRe().Interval(), 1'000);
        QCOMPARE(c.tmrRe().Tag(), "30");
    }

    void pressingCountsAndTheToolTipSaysSo()
    {
        Countdown c;
        c.timer.toggle();
        QVERIFY(c.pressed);
        QVERIFY(c.tmrRe().Enabled());
        QCOMPARE(c.tip, "Timer: Refreshing in 30 sec(s)");
        QCOMPARE(c.tmrRe().Tag(), "r30");
        c.seconds(1);
        QCOMPARE(c.tip, "Refreshing in 29 sec(s)");
        QCOMPARE(c.tmrRe().Tag(), "30");
        c.timer.toggle();
        QVERIFY(!c.pressed);
        QVERIFY(!c.tmrRe().Enabled());
        QCOMPARE(c.tip, "Timer");
    }

    void whatHasStoppedIsResumed_data()
    {
        const Rows<bool> row("byKeepRefreshing");
        row("by resume", false);
        row("by Keep Refreshing", true);
    }

    void whatHasStoppedIsResumed()
    {
        QFETCH(bool, byKeepRefreshing);
        Countdown c;
        c.timer.toggle();
        c.seconds(30);
        c.timer.fetchEnded(false);
        QVERIFY(c.stalled && c.timer.isStalled());
        QCOMPARE(c.tip, "Refreshing has stopped");
        if (byKeepRefreshing)
            c.timer.setKeepRefreshing(true);
        else
            c.timer.resume();
        QVERIFY(!c.stalled && !c.timer.isStalled());
        QVERIFY(c.pressed && c.tmrRe().Enabled());
        QCOMPARE(c.tip, "Timer: Refreshing in 30 sec(s)");
        c.seconds(1);
        QCOMPARE(c.tip, "Refreshing in 29 sec(s)");
    }

    void whatHasNotStoppedIsNotResumed()
    {
        Countdown c;
        c.timer.resume();
        c.timer.setKeepRefreshing(true);
        QVERIFY(!c.tmrRe().Enabled());
        c.timer.toggle();
        c.seconds(5);
        c.timer.resume();
        c.timer.setKeepRefreshing(true);
        QCOMPARE(c.tmrRe().Tag(), "30"); // the count goes on
        QCOMPARE(c.tip, "Refreshing in 25 sec(s)");
    }

    void aFetchThatFailsAtOnceLeavesTheStopOnShow()
    {
        Countdown c;
        connect(&c.timer, &RefreshTimer::RefreshDue, &c, [&c] { c.timer.fetchEnded(false); });
        c.timer.toggle();
        c.seconds(30);
        QCOMPARE(c.tip, "Refreshing has stopped");
    }

    void fetchesOnTheLastSecondAndWaitsForItsEnd()
    {
        Countdown c;
        c.timer.toggle();
        c.seconds(29);
        QCOMPARE(c.refreshes, 0);
        QCOMPARE(c.tip, "Refreshing in 1 sec(s)");
        c.seconds(1);
        QCOMPARE(c.refreshes, 1);
        QVERIFY(!c.tmrRe().Enabled());
        QCOMPARE(c.tip, "Refreshing in 30 sec(s)");
        QVERIFY(c.pressed);
        QVERIFY(!c.stalled);
        c.timer.fetchEnded(true);
        QVERIFY(c.tmrRe().Enabled());
        c.seconds(30);
        QCOMPARE(c.refreshes, 2);
    }

    void anotherIntervalTakesEffectAtTheNextTick()
    {
        Countdown c;
        c.timer.toggle();
        c.seconds(7);
        c.timer.setInterval(10);
        QCOMPARE(c.tmrRe().Tag(), "10");
        QCOMPARE(c.refreshes, 0);
        c.seconds(2);
        QCOMPARE(c.refreshes, 0);
        c.seconds(1);
        QCOMPARE(c.refreshes, 1);
    }

    void pressingTwiceKeepsTheRestartMark()
    {
        Countdown c;
        c.timer.toggle();
        c.timer.toggle();
        QVERIFY(!c.tmrRe().Enabled());
        QCOMPARE(c.tip, "Timer");
        QCOMPARE(c.tmrRe().Tag(), "r30");
        // A third press adds no second mark, and the tool tip shows the number alone.
        c.timer.toggle();
        QCOMPARE(c.tmrRe().Tag(), "r30");
        QCOMPARE(c.tip, "Timer: Refreshing in 30 sec(s)");
    }

    void anotherIntervalTakesTheRestartMarkAway()
    {
        Countdown c;
        c.timer.setInterval(10);
        c.timer.toggle();
        c.seconds(7);
        c.timer.toggle();
        c.timer.toggle();
        QCOMPARE(c.tmrRe().Tag(), "r10");
        c.timer.setInterval(9);
        QCOMPARE(c.tmrRe().Tag(), "9");
        c.seconds(2);
        QCOMPARE(c.refreshes, 1);
    }

    void theMarkRestartsTheCount()
    {
        Countdown c;
        c.timer.toggle();
        c.seconds(20);
        c.timer.toggle();
        c.timer.toggle();
        c.seconds(29);
        QCOMPARE(c.refreshes, 0);
        c.seconds(1);
        QCOMPARE(c.refreshes, 1);
    }

    void withoutUrlItStopsAndStaysPressed()
    {
        Countdown c;
        c.hasUrl = false;
        c.timer.setInterval(2);
        c.timer.toggle();
        c.seconds(1);
        QCOMPARE(c.refreshes, 0);
        QVERIFY(!c.stalled);
        c.seconds(1);
        QCOMPARE(c.refreshes, 1);
        QVERIFY(!c.tmrRe().Enabled());
        QVERIFY(c.pressed); // kept: the timer button stays pressed
        QVERIFY(c.stalled);
    }

    void zeroOrLessFetchesAtEveryTick()
    {
        for (const int seconds : {0, -5}) {
            Countdown c;
            c.timer.setInterval(seconds);
            c.timer.toggle();
            c.seconds(1);
            c.timer.fetchEnded(true);
            c.seconds(1);
            QCOMPARE(c.refreshes, 2);
        }
    }

    void theLargestIntervalDoesNotOverflow()
    {
        Countdown c;
        c.timer.setInterval(32767);
        c.timer.toggle();
        c.seconds(32766);
        QCOMPARE(c.refreshes, 0);
        QCOMPARE(c.tip, "Refreshing in 1 sec(s)");
        c.seconds(1);
        QCOMPARE(c.refreshes, 1);
    }

    void errorsStopRefreshing()
    {
        Countdown c;
        c.timer.setInterval(1);
        c.timer.toggle();
        c.seconds(1);
        c.timer.fetchEnded(false);
        QVERIFY(!c.tmrRe().Enabled());
        QVERIFY(c.stalled);
        QVERIFY(c.pressed);
        // A later fetch that works sets it going again.
        c.timer.fetchEnded(true);
        QVERIFY(c.tmrRe().Enabled());
        QVERIFY(!c.stalled);
    }

    void keepRefreshingGoesOnAfterErrors()
    {
        Countdown c;
        c.timer.setKeepRefreshing(true);
        c.timer.setInterval(1);
        c.timer.toggle();
        c.seconds(1);
        c.timer.fetchEnded(false);
        QVERIFY(c.tmrRe().Enabled());
        QVERIFY(!c.stalled);
    }

    void aManualFetchWhileCountingLeavesTheCount()
    {
        Countdown c;
        c.timer.setInterval(10);
        c.timer.toggle();
        c.seconds(7);
        c.timer.fetchEnded(false);
        QVERIFY(c.tmrRe().Enabled());
        QVERIFY(!c.stalled);
        c.seconds(3);
        QCOMPARE(c.refreshes, 1);
    }

    void aStoppedFetchStalls()
    {
        Countdown c;
        c.timer.setInterval(1);
        c.timer.toggle();
        c.timer.fetchStopped();
        QVERIFY(!c.stalled); // still counting
        c.seconds(1);
        c.timer.fetchStopped();
        QVERIFY(c.stalled);
        c.timer.toggle();
        QVERIFY(!c.stalled);
    }

    void releasedNothingStartsIt()
    {
        Countdown c;
        c.timer.setKeepRefreshing(true);
        c.timer.fetchEnded(true);
        c.timer.fetchEnded(false);
        c.timer.fetchStopped();
        QVERIFY(!c.tmrRe().Enabled());
        QVERIFY(!c.stalled);
    }
};

QTEST_GUILESS_MAIN(RefreshTimerTest)
#include "tst_RefreshTimer.moc"
