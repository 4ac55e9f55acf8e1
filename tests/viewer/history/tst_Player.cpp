// Playing the history: which entry when, and what the buttons do meanwhile. Time is moved by hand.

#include "shared/JobQueue.h"
#include "support/Pictures.h"
#include "support/TimeSeam.h"
#include "viewer/history/History.h"
#include "viewer/history/Player.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"

#include <memory>
#include <utility>

namespace {

class OtherWork : public Job
{
public:
    void begin() override {}
    void cancel() override {}
    void end() { emit Finished(); }
};

} // namespace

static const QList<int> AllButtons{1, 2, 4, 5, 6, 7, 9, 10, 12, 13, 15};

class PlayerTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        history = std::make_unique<History>();
        bar = std::make_unique<ToolBar>(nullptr);
        queue = std::make_unique<JobQueue>(nullptr);
        player = std::make_unique<Player>(*history, *bar, *queue, nullptr);
        now = QDateTime(QDate(2001, 2, 3), QTime(12, 0));
        player->setClock([this] { return now; });
        frames.clear();
        connect(player.get(), &Player::FrameDue, this, [this](int n) { frames << n; });
    }

    void cleanup()
    {
        queue.reset();
        player.reset();
    }

    void anEmptyHistoryEnablesTheButtonsAndReturns()
    {
        bar->setButtonsEnabled(false);
        player->stop();
        player->Play();
        QCOMPARE(enabledButtons(), (QList<int>{1, 2, 4, 5, 6, 7, 9, 10, 12, 15}));
        // It has withdrawn the request to stop.
        add(1);
        player->Play();
        QCOMPARE(takeFrames(), QList<int>{1});
        player->stop();
        letEnd();
        QVERIFY(!queue->isBusy());
        QVERIFY(frames.isEmpty());
    }

    void framesFollowOneAnotherAndBeginAnew()
    {
        add(3);
        player->start(0.5F);
        QCOMPARE(takeFrames(), QList<int>{1});
        QCOMPARE(pause().Interval(), 500);
        for (int i = 0; i < 4; ++i)
            pass(500);
        QCOMPARE(takeFrames(), (QList<int>{2, 3, 1, 2}));
    }

    void onlyStopMovieIsLeftEnabled()
    {
        add(1);
        player->start(1);
        QCOMPARE(enabledButtons(), QList<int>{13});
        player->stop();
        // Who stops the play enables the buttons.
        QCOMPARE(enabledButtons(), QList<int>{13});
    }

    void aPassPicksUpWhatHasComeMeanwhile()
    {
        add(2);
        player->start(1);
        add(1);
        for (int i = 0; i < 4; ++i)
            pass(1000);
        QCOMPARE(takeFrames(), (QList<int>{1, 2, 1, 2, 3}));
    }

    void anEmptiedHistoryIsSurvived()
    {
        add(3);
        player->start(1);
        history->Clear();
        pass(1000);
        pass(1000);
        QCOMPARE(takeFrames(), QList<int>{1});
        QVERIFY(pause().Enabled());
        QCOMPARE(pause().Interval(), 1000);
        add(1);
        pass(1000);
        QCOMPARE(takeFrames(), QList<int>{1});
    }

    void entriesThatHaveGoneAreSkipped()
    {
        add(3);
        player->start(1);
        history->setCurrentImage(3);
        history->removeCurrent();
        history->setCurrentImage(2);
        history->removeCurrent();
        pass(1000);
        QCOMPARE(takeFrames(), (QList<int>{1, 1}));
    }

    void stopEndsThePauseAtOnce()
    {
        add(2);
        player->start(1);
        player->stop();
        QCOMPARE(pause().Interval(), 0);
        letEnd();
        QVERIFY(!queue->isBusy());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!queue->findChild<Timer*>());
        QCOMPARE(takeFrames(), QList<int>{1});
        // The request to stop is done with.
        player->Play();
        QCOMPARE(takeFrames(), QList<int>{1});
    }

    void stoppedBeforeItsTurnNothingIsPlayed()
    {
        add(2);
        auto* const running = occupyQueue();
        player->start(1);
        player->stop();
        running->end();
        QVERIFY(frames.isEmpty());
        QVERIFY(!queue->isBusy());
    }

    void playAfterStopBeginsWithTheNewSpeed()
    {
        add(3);
        player->start(1);
        pass(1000);
        player->stop();
        letEnd();
        player->start(0.2F);
        QCOMPARE(takeFrames(), (QList<int>{1, 2, 1}));
        pass(210);
        QCOMPARE(takeFrames(), QList<int>{2});
    }

    void playWhileAStoppedOneWindsDownTakesOver()
    {
        add(3);
        player->start(1);
        pass(1000);
        player->stop();
        player->start(0.2F);
        QCOMPARE(takeFrames(), (QList<int>{1, 2, 1}));
        QVERIFY(qAbs(pause().Interval() - 200) <= 8);
        pass(210);
        QCOMPARE(takeFrames(), QList<int>{2});
        QVERIFY(queue->isBusy());
    }

    void aStoppedOneThatWaitedDoesNotComeBack()
    {
        add(2);
        auto* const running = occupyQueue();
        player->start(1);
        player->stop();
        history->Clear();
        player->start(1);
        running->end();
        QVERIFY(!queue->isBusy());
    }

    void whatStoppedOneThatWaitedStopsNoOther()
    {
        add(2);
        auto* const running = occupyQueue();
        player->start(1);
        player->stop();
        player->Play();
        running->end();
        QCOMPARE(takeFrames(), QList<int>{1});
        QVERIFY(queue->isBusy());
    }

    void thePauseBeginsWhenTheFrameIsShown()
    {
        add(2);
        connect(player.get(), &Player::FrameDue, this, [this] { now = now.addMSecs(700); });
        player->start(0.5F);
        QVERIFY(qAbs(pause().Interval() - 500) <= 8);
    }

    void aHandlerOfTheFrameMayStop()
    {
        add(2);
        connect(player.get(), &Player::FrameDue, player.get(), &Player::stop);
        player->start(1);
        QCOMPARE(pause().Interval(), 0);
        letEnd();
        QVERIFY(!queue->isBusy());
        QCOMPARE(takeFrames(), QList<int>{1});
    }

    void playWhilePlayingBeginsAnewWithTheNewSpeed()
    {
        add(3);
        player->start(1);
        pass(1000);
        player->start(0.2F);
        QCOMPARE(takeFrames(), (QList<int>{1, 2, 1}));
        QCOMPARE(pause().Interval(), 200);
        player->stop();
        letEnd();
        QVERIFY(!queue->isBusy());
    }

    void aStopThatNobodyHasWithdrawnEndsTheNextPlay()
    {
        add(2);
        player->stop();
        player->Play();
        QVERIFY(queue->isBusy());
        letEnd();
        QVERIFY(!queue->isBusy());
        QVERIFY(frames.isEmpty());
        QCOMPARE(enabledButtons(), QList<int>{13});
        player->start(1);
        QCOMPARE(takeFrames(), QList<int>{1});
    }

    void aPauseLastsUntilTheClockSaysSo()
    {
        add(2);
        player->start(1);
        pass(400);
        QVERIFY(pause().Enabled());
        constexpr int stepsOfSinglePrecisionMs = 8;
        QVERIFY(qAbs(pause().Interval() - 600) <= stepsOfSinglePrecisionMs);
        QCOMPARE(takeFrames(), QList<int>{1});
        pass(610);
        QCOMPARE(takeFrames(), QList<int>{2});
    }

    void aPauseAcrossMidnightLastsUntilTheNextDay()
    {
        now.setTime(QTime(23, 59, 59, 900));
        add(2);
        player->start(0.5F);
        QCOMPARE(pause().Interval(), 500);
        pass(500);
        QCOMPARE(now.date(), QDate(2001, 2, 4));
        for (int hour = 1; hour < 24; ++hour)
            pass(3'600'000);
        QCOMPARE(takeFrames(), QList<int>{1});
        // Awake now and then, but no more often than that.
        QCOMPARE(pause().Interval(), 1000);
        now.setTime(QTime(23, 59, 59, 890));
        pass(0);
        QCOMPARE(takeFrames(), QList<int>{});
        pass(20);
        QCOMPARE(takeFrames(), QList<int>{2});
    }

    void aSetBackClockLengthensThePause()
    {
        add(2);
        player->start(1);
        pass(-3'600'000);
        QCOMPARE(takeFrames(), QList<int>{1});
        pass(3'600'000);
        QCOMPARE(takeFrames(), QList<int>{});
        pass(1000);
        QCOMPARE(takeFrames(), QList<int>{2});
    }

    void waitsForItsTurn()
    {
        add(2);
        auto* const running = occupyQueue();
        player->start(0.2F);
        QVERIFY(frames.isEmpty());
        QCOMPARE(enabledButtons(), QList<int>{13});
        // Pressed again: it keeps its place and takes the new speed.
        player->start(0.5F);
        running->end();
        QCOMPARE(takeFrames(), QList<int>{1});
        QCOMPARE(pause().Interval(), 500);
    }

    void aFrameShownLongBeforeIsNoBusyWait()
    {
        add(2);
        player->start(0);
        QCOMPARE(takeFrames(), QList<int>{1});
        QVERIFY(pause().Interval() >= 1);
    }

private:
    void add(int entries)
    {
        for (int i = 0; i < entries; ++i)
            history->AppendFile(Still::fromImage(plainImage({2, 2}, Qt::red)));
    }

    /// Other long work runs from now on.
    OtherWork* occupyQueue()
    {
        auto other = std::make_unique<OtherWork>();
        auto* const running = other.get();
        queue->enqueue(std::move(other));
        return running;
    }

    /// The clock goes on, and the timer that sleeps until then ticks.
    void pass(int ms)
    {
        now = now.addMSecs(ms);
        pause().elapse();
    }

    /// Of a play that has been stopped.
    void letEnd() { pause().elapse(); }

    QList<int> takeFrames() { return std::exchange(frames, {}); }

    QList<int> enabledButtons() const
    {
        QList<int> enabled;
        for (const int index : AllButtons) {
            if (bar->button(index)->isEnabled())
                enabled << index;
        }
        return enabled;
    }

    Timer& pause()
    {
        // A play that is over goes with the next events.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return timerOf(*queue, "tmrPlay");
    }

    std::unique_ptr<History> history;
    std::unique_ptr<ToolBar> bar;
    std::unique_ptr<JobQueue> queue;
    std::unique_ptr<Player> player;
    QDateTime now;
    QList<int> frames;
};

QTEST_MAIN(PlayerTest)
#include "tst_Player.moc"
