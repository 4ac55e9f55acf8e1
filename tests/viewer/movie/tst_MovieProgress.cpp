// Movies loaded and saved with their progress window, as a person and the viewer see it.
#include "viewer/movie/MovieProgress.h"

#include "picture/SaveImage.h"
#include "shared/JobQueue.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/TimeSeam.h"
#include "viewer/movie/MovieReader.h"
#include "viewer/movie/MovieWriter.h"
#include "viewer/movie/frmMovie.h"

#include <QProgressBar>

#include <memory>
#include <utility>

namespace {

QByteArray movieOf(const QList<int>& widths)
{
    QByteArrayList frames;
    for (const int width : widths)
        frames += encodedPicture({width, 30}, Qt::red);
    return frames.join("&IMAGE&");
}

/// Notes each change of a window's title and of its bar.
class Watch : public QObject
{
public:
    QStringList seen;

    void watch(frmMovie& window)
    {
        connect(&window, &QWidget::windowTitleChanged, this,
                [this](const QString& title) { seen << title; });
        connect(&window.pBar(), &QProgressBar::valueChanged, this,
                [this](int value) { seen << QString::number(value); });
    }
};

} // namespace

class MovieProgressTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_movie = std::make_unique<ScratchFile>("a.pvm");
        m_owner = std::make_unique<QWidget>();
        m_owner->resize(400, 300);
        m_owner->show();
        QVERIFY(waitForExposed(m_owner.get()));
        m_queue = std::make_unique<JobQueue>(nullptr);
        m_images.Clear();
        for (int i = 1; i <= 3; ++i)
            m_images.Add(Still::fromImage(plainImage({10 * i, 30}, Qt::red)));
        m_told.clear();
    }

    void cleanup()
    {
        m_queue.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_owner.reset();
        QVERIFY(!window());
    }

    void aMovieIsLoadedWithItsWindow()
    {
        m_movie->setContent(movieOf({10, 20}));
        load();
        QCOMPARE(m_told, QStringList("began"));
        QVERIFY(window());
        QVERIFY(window()->isVisible());
        QVERIFY(!window()->isModal());
        QCOMPARE(window()->windowTitle(), "Loading Movie...");
        QCOMPARE(window()->pBar().value(), 0);
        QCOMPARE(window()->parentWidget(), m_owner.get());
        end();
        QCOMPARE(m_told,
                 QStringList({"began", "frame 10 shown", "frame 20 shown", "loaded", "finished"}));
        QTRY_VERIFY(!window());
    }

    void aMovieIsSavedWithItsWindow()
    {
        save();
        QCOMPARE(m_told, QStringList("began"));
        QVERIFY(window());
        QVERIFY(window()->isVisible());
        QCOMPARE(window()->windowTitle(), "Saving Movie");
        QCOMPARE(window()->pBar().maximum(), 5);
        end();
        QCOMPARE(m_told, QStringList({"began", "finished"}));
        QCOMPARE(m_movie->content().count("&IMAGE&"), 2);
        QTRY_VERIFY(!window());
    }

    void theCaptionsAndTheBarFollowTheSaving()
    {
        Watch watch;
        save();
        watch.watch(*window());
        end();
        QCOMPARE(watch.seen, QStringList({"1", "Saving Image 1", "2", "Saving Image 2", "3",
                                          "Saving Image 3", "4", "Saving Movie...", "5", "Done!"}));
        watch.seen.clear();
        m_told.clear();
        QTRY_VERIFY(!window());
        load();
        watch.watch(*window());
        end();
        QCOMPARE(watch.seen, QStringList({"1", "2", "3", "Done!"}));
        QCOMPARE(m_told.size(), 6);
    }

    void aFailedLoadingHidesItsWindowFirst()
    {
        m_movie->setContent("no movie");
        load();
        end();
        QCOMPARE(m_told, QStringList({"began", "failed", "finished"}));
        QTRY_VERIFY(!window());
    }

    void aFailedLoadingKeepsTheFramesBefore()
    {
        m_movie->setContent(movieOf({10, 20}) + "&IMAGE&" + "This is a text and no picture.");
        load();
        end();
        QCOMPARE(m_told,
                 QStringList({"began", "frame 10 shown", "frame 20 shown", "failed", "finished"}));
    }

    void aFailedSavingHidesItsWindowFirst()
    {
        start(std::make_unique<MovieWriter>(folder(), folder(), m_images), m_owner.get());
        end();
        QCOMPARE(m_told, QStringList({"began", "failed", "finished"}));
        QTRY_VERIFY(!window());
    }

    void closingTheWindowEndsALoadingWithTheFramesSoFar()
    {
        m_movie->setContent(movieOf({10, 20, 30}));
        Job* work = load();
        letPass(*work, 4); // opened, looked for its parts, and read two
        QCOMPARE(m_told.last(), "frame 20 shown");
        QVERIFY(window()->close());
        QCOMPARE(m_told,
                 QStringList({"began", "frame 10 shown", "frame 20 shown", "loaded", "finished"}));
        QTRY_VERIFY(!window());
        QCOMPARE(m_told.size(), 5);
        QVERIFY(!m_queue->isBusy());
    }

    void closingTheWindowBeforeTheFirstFrameLoadsNothing()
    {
        m_movie->setContent(movieOf({10, 20, 30}));
        Job* work = load();
        letPass(*work, 2);
        QVERIFY(window()->close());
        QCOMPARE(m_told, QStringList({"began", "finished"}));
        QTRY_VERIFY(!window());
    }

    void closingTheWindowEndsASavingAndKeepsTheOldFile()
    {
        m_movie->setContent("an old movie");
        Job* work = save();
        letPass(*work, 4); // all but the writing
        QCOMPARE(window()->windowTitle(), "Saving Movie...");
        QVERIFY(window()->close());
        QCOMPARE(m_told, QStringList({"began", "failed", "finished"}));
        QVERIFY(!timerOf(*work, "tmrMovie").Enabled());
        // Nor once more, while the window is still to go.
        window()->close();
        QCOMPARE(m_told, QStringList({"began", "failed", "finished"}));
        QTRY_VERIFY(!window());
        QCOMPARE(m_movie->content(), QByteArray("an old movie"));
    }

    void closedInTheMiddleOfAStepItTellsNoMore_data()
    {
        const Rows<bool, QStringList> row("atItsValue", "told");
        row("before the frame", true, {"began", "finished"});
        row("with the frame", false, {"began", "frame 10 shown", "loaded", "finished"});
    }

    void closedInTheMiddleOfAStepItTellsNoMore()
    {
        QFETCH(bool, atItsValue);
        m_movie->setContent(movieOf({10, 20}));
        auto* reader = qobject_cast<MovieReader*>(load());
        const auto close = [] { window()->close(); };
        if (atItsValue)
            connect(reader, &MovieJob::ValueChanged, this, close);
        else
            connect(reader, &MovieReader::FrameRead, this, close);
        end();
        QTRY_VERIFY(!window());
        QTEST(m_told, "told");
    }

    void theEndOfTheProgramEndsItWithoutAWord_data()
    {
        const Rows<bool, int> row("saves", "steps");
        for (int steps = 0; steps < 5; ++steps) {
            row("saving, " + std::to_string(steps), true, steps);
            row("loading, " + std::to_string(steps), false, steps);
        }
    }

    void theEndOfTheProgramEndsItWithoutAWord()
    {
        QFETCH(bool, saves);
        QFETCH(int, steps);
        const QByteArray old = movieOf({10, 20, 40}) + "&IMAGE&no";
        m_movie->setContent(old);
        Job* work = saves ? save() : load();
        letPass(*work, steps);
        const QStringList before = m_told;
        QVERIFY(window()->isVisible());
        m_queue->shutDown();
        QVERIFY(!window()->isVisible());
        QTRY_VERIFY(!window());
        QCOMPARE(m_told, before);
        QCOMPARE(m_movie->content(), old);
        QCOMPARE(QDir(m_movie->folder()).entryList(QDir::Files | QDir::Hidden),
                 QStringList("a.pvm"));
    }

    void aWorkThatWaitsMayBeCancelled()
    {
        m_movie->setContent(movieOf({10}));
        load();
        Job* second = save();
        m_queue->drop(second);
        end();
        QCOMPARE(m_told, QStringList({"began", "frame 10 shown", "loaded", "finished"}));
        QCOMPARE(m_movie->content(), movieOf({10}));
    }

    void aHandlerOfItsBeginningMayCancelIt()
    {
        m_movie->setContent(movieOf({10}));
        auto work = std::make_unique<MovieReader>(path(), folder());
        MovieJob* const loading = work.get();
        showProgressOf(*loading, m_owner.get());
        connect(loading, &MovieJob::Began, this, [&] { m_queue->drop(loading); });
        m_queue->enqueue(std::move(work));
        QVERIFY(!window());
        QVERIFY(!timerOf(*loading, "tmrMovie").Enabled());
        QVERIFY(!m_queue->isBusy());
    }

    void theNextOneFollowsInTheSameQueue()
    {
        save();
        load();
        end();
        QCOMPARE(m_told, QStringList({"began", "finished", "began", "frame 10 shown",
                                      "frame 20 shown", "frame 30 shown", "loaded", "finished"}));
    }

    void itsParentMayGoFirst()
    {
        m_movie->setContent("no movie");
        load();
        m_owner.reset();
        QVERIFY(!window());
        end();
        QCOMPARE(m_told, QStringList({"began", "failed", "finished"}));
    }

    void itsParentMayBeGoneBeforeItsTurn()
    {
        m_movie->setContent(movieOf({10}));
        save();
        load();
        m_owner.reset();
        end();
        QCOMPARE(m_told, QStringList({"began", "finished", "began", "frame 10 shown",
                                      "frame 20 shown", "frame 30 shown", "loaded", "finished"}));
    }

    void itNeedsNoParent()
    {
        m_movie->setContent(movieOf({10}));
        start(std::make_unique<MovieReader>(path(), folder()), nullptr);
        QVERIFY(window()->isVisible());
        end();
        QVERIFY(m_told.contains("loaded"));
        QTRY_VERIFY(!window());
    }

private:
    static frmMovie* window()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<frmMovie*>(widget))
                return found;
        }
        return nullptr;
    }

    /// Steps of the running work's timer.
    static void letPass(Job& work, int steps)
    {
        for (int i = 0; i < steps; ++i)
            timerOf(work, "tmrMovie").elapse();
    }

    /// Connects `work` to the log, shows its progress, and hands it to the queue.
    Job* start(std::unique_ptr<MovieJob> work, QWidget* parent)
    {
        MovieJob* const started = work.get();
        connect(started, &MovieJob::Began, this, [this] { tell("began"); });
        connect(started, &MovieJob::Failed, this, [this] { tell("failed"); });
        connect(started, &MovieJob::Finished, this, [this] { tell("finished"); });
        if (auto* loading = qobject_cast<MovieReader*>(started)) {
            connect(loading, &MovieReader::FrameRead, this, [this](const Still& frame) {
                tell(QString("frame %1").arg(frame.size().width()));
            });
            connect(loading, &MovieReader::Loaded, this, [this] { tell("loaded"); });
        }
        // Last: the order of the connections is not what the order of the signals hangs on.
        showProgressOf(*started, parent);
        m_queue->enqueue(std::move(work));
        return started;
    }

    Job* load() { return start(std::make_unique<MovieReader>(path(), folder()), m_owner.get()); }
    Job* save()
    {
        return start(std::make_unique<MovieWriter>(path(), folder(), m_images), m_owner.get());
    }
    void end() { QTRY_VERIFY(!m_queue->isBusy()); }
    QString path() const { return m_movie->path(); }
    QString folder() const { return m_folder.path(); }

    void tell(const QString& what)
    {
        m_told << (window() && window()->isVisible() ? what + " shown" : what);
    }

    QTemporaryDir m_folder;
    std::unique_ptr<ScratchFile> m_movie;
    std::unique_ptr<QWidget> m_owner;
    ImageList m_images;
    std::unique_ptr<JobQueue> m_queue;
    /// What the work told, each with "shown" behind it while there was a window on screen.
    QStringList m_told;
};

QTEST_MAIN(MovieProgressTest)
#include "tst_MovieProgress.moc"
