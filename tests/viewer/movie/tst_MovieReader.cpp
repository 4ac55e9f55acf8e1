// Movie files, whole and broken ones, read step by step.
#include "viewer/movie/MovieReader.h"

#include "support/JobLog.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"
#include "support/TimeSeam.h"

#include <QLoggingCategory>

#include <algorithm>
#include <functional>

namespace {

QByteArray frame(int width, const QColor& colour = Qt::red)
{
    return encodedPicture({width, 30}, colour);
}

QByteArray movieOf(const QByteArrayList& frames)
{
    return frames.join(MovieSeparator.toByteArray());
}

QStringList told(const QString& path, const QString& folder)
{
    MovieReader reader(path, folder);
    return JobLog(reader).run();
}

const QStringList FailsAtOnce{"value 0", "caption Loading Movie...", "failed", "finished"};

} // namespace

class MovieReaderTest : public QObject
{
    Q_OBJECT
private slots:
    void theOrderIsAlwaysTheSame()
    {
        ScratchFile movie("three.pvm");
        movie.setContent(movieOf({frame(10), frame(20), frame(30)}));
        MovieReader reader(movie.path(), m_folder.path());
        JobLog log(reader);
        reader.begin();
        // Nothing but this within begin(): the window is shown before the file is opened.
        QCOMPARE(log.told(), QStringList({"value 0", "caption Loading Movie..."}));
        QTRY_VERIFY(log.isFinished());
        QCOMPARE(log.told(),
                 QStringList({"value 0", "caption Loading Movie...", "maximum 3", "value 1",
                              "frame 10x30", "value 2", "frame 20x30", "value 3", "frame 30x30",
                              "caption Done!", "loaded", "finished"}));
        QVERIFY(!timerOf(reader, "tmrMovie").Enabled());
    }

    void aFileWithoutASeparatorIsOneFrame()
    {
        ScratchFile movie("one.pvm");
        movie.setContent(frame(12));
        QCOMPARE(told(movie.path(), m_folder.path()).mid(2),
                 QStringList({"maximum 1", "value 1", "frame 12x30", "caption Done!", "loaded",
                              "finished"}));
    }

    void theFramesAreTheFilesBytes()
    {
        const QByteArrayList frames{frame(10, Qt::red), largePicture(100'000), frame(10, Qt::blue)};
        ScratchFile movie("bytes.pvm");
        movie.setContent(movieOf(frames));
        MovieReader reader(movie.path(), m_folder.path());
        QByteArrayList got;
        connect(&reader, &MovieReader::FrameRead, [&](const Still& one) { got += one.bytes(); });
        QVERIFY(JobLog(reader).run().contains("loaded"));
        QCOMPARE(got, frames);
    }

    void framesOfOtherKindsAndSizesAreFine()
    {
        ScratchFile movie("mixed.pvm");
        movie.setContent(
            movieOf({smallGif(), encodedPicture({7, 5}, Qt::green, "bmp"), frame(300)}));
        MovieReader reader(movie.path(), m_folder.path());
        JobLog mixed(reader);
        QVERIFY(mixed.run().contains("loaded"));
        QCOMPARE(mixed.told("frame"), QStringList({"2x2", "7x5", "300x30"}));
    }

    void moreThan45FramesStayWhole()
    {
        QByteArrayList frames;
        QStringList sizes;
        for (int width = 1; width <= 60; ++width) {
            frames += frame(width);
            sizes += QString("%1x30").arg(width);
        }
        ScratchFile movie("long.pvm");
        movie.setContent(movieOf(frames));
        MovieReader reader(movie.path(), m_folder.path());
        JobLog log(reader);
        QVERIFY(log.run().contains("loaded"));
        QCOMPARE(log.told("frame"), sizes);
        QCOMPARE(log.told("maximum"), QStringList("60"));
    }

    void whatIsNoMovieFails_data()
    {
        const Rows<QString, QByteArray, bool> row("name", "content", "opens");
        row("missing", "missing/one.pvm", {}, false);
        row("empty", "empty.pvm", "", false);
        row("a text", "text.pvm", "This is a text and no picture.", true);
        row("one byte", "byte.pvm", "&", true);
        row("a separator", "separator.pvm", "&IMAGE&", true);
        row("separators", "separators.pvm", QByteArray("&IMAGE&").repeated(100), true);
        row("a picture of another kind", "other.pvm", encodedPicture({9, 9}, Qt::red, "png"), true);
        row("half a header", "half.pvm", frame(10).left(100), true);
    }

    void whatIsNoMovieFails()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(bool, opens);
        ScratchFile movie(name);
        if (!name.startsWith("missing"))
            movie.setContent(content);
        QStringList expected = FailsAtOnce;
        if (opens)
            expected = QStringList({"value 0", "caption Loading Movie...", "maximum 1", "value 1",
                                    "failed", "finished"});
        QCOMPARE(told(movie.path(), m_folder.path()), expected);
    }

    void aPipeAndADeviceAreNotWaitedFor()
    {
        // A hang ends this test by the time limit of its own process.
        if (ranAsOrdinaryUser())
            return;
        const QString pipe = m_folder.filePath("pipe.pvm");
        QCOMPARE(QProcess::execute("mkfifo", {pipe}), 0);
        for (const QString& path : {pipe, QString("/dev/zero"), m_folder.path(), QString()})
            QCOMPARE(told(path, m_folder.path()), FailsAtOnce);
    }

    void aFileThatMustNotBeReadFails()
    {
        if (ranAsOrdinaryUser())
            return;
        ScratchFile movie("secret.pvm");
        movie.setContent(frame(10));
        QVERIFY(QFile::setPermissions(movie.path(), QFile::WriteOwner));
        QCOMPARE(told(movie.path(), m_folder.path()), FailsAtOnce);
    }

    void framesBeforeABadOneAreGiven_data()
    {
        const Rows<QByteArray, QString, qint64> row("bad", "maximum",
                                                    "written"); // beyond the frames before
        row("a text", "This is a text and no picture.", "4", qint64(0));
        // What cannot be a picture by its length alone ends the search for parts.
        row("nothing", {}, "3", qint64(0));
        row("too long", QByteArray(Still::MaxEncodedBytes + 1, 'x'), "3", qint64(0));
        // The longest that is read at all.
        row("as long as may be", QByteArray(Still::MaxEncodedBytes, 'x'), "4",
            qint64(Still::MaxEncodedBytes));
    }

    void framesBeforeABadOneAreGiven()
    {
        QFETCH(QByteArray, bad);
        QFETCH(QString, maximum);
        QFETCH(qint64, written);
        const QTemporaryDir folder;
        ScratchFile movie("bad.pvm");
        movie.setContent(movieOf({frame(10), frame(20), bad, frame(30)}));
        QCOMPARE(told(movie.path(), folder.path()),
                 QStringList({"value 0", "caption Loading Movie...", "maximum " + maximum,
                              "value 1", "frame 10x30", "value 2", "frame 20x30", "value 3",
                              "failed", "finished"}));
        const qint64 frames = std::max(frame(10).size(), frame(20).size());
        QCOMPARE(QFileInfo(folder.filePath("tt.jpg")).size(), std::max(frames, written));
    }

    void aFileCutAtEachByteNearASeparatorGivesWhatItHolds_data()
    {
        QTest::addColumn<int>("cut");
        QTest::addColumn<QStringList>("frames");
        QTest::addColumn<bool>("loads");
        // Counted from the beginning of the second separator. A JPEG without its last bytes is one.
        for (int cut = -12; cut <= 20; ++cut) {
            const bool secondAlone = cut < MovieSeparator.size();
            QTest::addRow("%d", cut) << cut << QStringList{"40x30", "50x30"} << secondAlone;
        }
    }

    void aFileCutAtEachByteNearASeparatorGivesWhatItHolds()
    {
        QFETCH(int, cut);
        QFETCH(QStringList, frames);
        QFETCH(bool, loads);
        QLoggingCategory::setFilterRules("qt.gui.imageio*=false"); // some end early
        const QByteArray firstTwo = movieOf({frame(40), frame(50)});
        const QByteArray whole = movieOf({frame(40), frame(50), frame(60)});
        ScratchFile movie("cut.pvm");
        movie.setContent(whole.left(firstTwo.size() + cut));
        MovieReader reader(movie.path(), m_folder.path());
        JobLog log(reader);
        log.run();
        QCOMPARE(log.told("frame"), frames);
        QCOMPARE(log.told().contains("loaded"), loads);
        QCOMPARE(log.told().contains("failed"), !loads);
        QCOMPARE(log.told().count("finished"), 1);
    }

    void aSeparatorAcrossTwoChunksIsFound()
    {
        // A JPEG may be followed by anything.
        const QByteArray first = frame(40);
        for (int before = 0; before <= MovieSeparator.size(); ++before) {
            const QByteArray filled =
                first + QByteArray(MovieScan::DefaultChunkBytes - first.size() - before, 'x');
            ScratchFile movie("chunks.pvm");
            movie.setContent(movieOf({filled, frame(50)}));
            MovieReader reader(movie.path(), m_folder.path());
            JobLog log(reader);
            QVERIFY(log.run().contains("loaded"));
            QCOMPARE(log.told("frame"), QStringList({"40x30", "50x30"}));
        }
    }

    void aFileThatBecomesShorterFails()
    {
        ScratchFile movie("shorter.pvm");
        movie.setContent(movieOf({frame(10), frame(20), frame(30)}));
        MovieReader reader(movie.path(), m_folder.path());
        JobLog log(reader);
        // Between the two passes, and in the middle of the second.
        connect(&reader, &MovieReader::FrameRead,
                [&] { QVERIFY(QFile::resize(movie.path(), frame(10).size() + 20)); });
        log.run();
        QCOMPARE(log.told("frame"), QStringList("10x30"));
        QCOMPARE(log.told().mid(log.told().size() - 3),
                 QStringList({"value 2", "failed", "finished"}));

        movie.setContent(QByteArray(3 * MovieScan::DefaultChunkBytes, 'x'));
        MovieReader second(movie.path(), m_folder.path());
        JobLog secondLog(second);
        second.begin();
        timerOf(second, "tmrMovie").elapse(); // opens it
        timerOf(second, "tmrMovie").elapse(); // the first chunk
        QVERIFY(QFile::resize(movie.path(), 1000));
        QTRY_VERIFY(secondLog.isFinished());
        QCOMPARE(secondLog.told(), FailsAtOnce);
    }

    void aFileThatIsReplacedMeanwhileIsReadAsItWas()
    {
        ScratchFile movie("old.pvm");
        movie.setContent(movieOf({frame(10), frame(20), frame(30)}));
        ScratchFile other("new.pvm");
        other.setContent("something else");
        MovieReader reader(movie.path(), m_folder.path());
        JobLog log(reader);
        connect(&reader, &MovieJob::MaximumChanged, [&] {
            QVERIFY(QFile::remove(movie.path()));
            QVERIFY(QFile::rename(other.path(), movie.path()));
        });
        QVERIFY(log.run().contains("loaded"));
        QCOMPARE(log.told("frame").size(), 3);
    }

    void eachFrameLiesInTheTemporaryFileMeanwhile()
    {
        const QTemporaryDir folder;
        const QByteArrayList frames{frame(10), frame(20), frame(40)};
        ScratchFile movie("three.pvm");
        movie.setContent(movieOf(frames));
        MovieReader reader(movie.path(), folder.path());
        QByteArrayList seen;
        connect(&reader, &MovieReader::FrameRead, [&](const Still& one) {
            seen += contentOf(folder.filePath("tt.jpg")).left(one.bytes().size());
        });
        QVERIFY(JobLog(reader).run().contains("loaded"));
        QCOMPARE(seen, frames);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList("tt.jpg"));
    }

    void theOldEndOfTheTemporaryFileStays()
    {
        ScratchFile temporary("tt.jpg");
        const QByteArray old(50'000, 'o');
        temporary.setContent(old);
        const QByteArrayList frames{largePicture(10'000), frame(10)};
        ScratchFile movie("two.pvm");
        movie.setContent(movieOf(frames));
        QVERIFY(told(movie.path(), temporary.folder()).contains("loaded"));
        QCOMPARE(temporary.content(), frames.at(1) + frames.at(0).mid(frames.at(1).size()) +
                                          old.mid(frames.at(0).size()));
    }

    void nothingIsWrittenThroughWhatIsNoOrdinaryFile_data()
    {
        const Rows<QString> row("kind");
        for (const char* kind : {"folder", "link", "broken link", "pipe"})
            row(kind, kind);
    }

    void nothingIsWrittenThroughWhatIsNoOrdinaryFile()
    {
        QFETCH(QString, kind);
        if (ranAsOrdinaryUser())
            return;
        ScratchFile target("target");
        const QTemporaryDir folder;
        const QString path = folder.filePath("tt.jpg");
        if (kind == "folder") {
            QVERIFY(QDir().mkdir(path));
        } else if (kind == "pipe") {
            QCOMPARE(QProcess::execute("mkfifo", {path}), 0);
        } else {
            if (kind == "link")
                target.setContent("precious");
            QVERIFY(QFile::link(target.path(), path));
        }
        ScratchFile movie("two.pvm");
        // More than a pipe holds until somebody reads it.
        movie.setContent(movieOf({frame(10), largePicture(100'000)}));
        QVERIFY(told(movie.path(), folder.path()).contains("loaded"));
        QCOMPARE(target.content(), QByteArray(kind == "link" ? "precious" : "none"));
        QVERIFY(kind == "folder" ? QFileInfo(path).isDir()
                                 : !QFileInfo(path).isFile() || kind == "link");
    }

    void aMovieThatIsTheTemporaryFileItselfIsReadWhole()
    {
        ScratchFile movie("tt.jpg");
        const QByteArray content = movieOf({frame(10), frame(200), frame(30)});
        movie.setContent(content);
        MovieReader reader(movie.path(), movie.folder());
        JobLog log(reader);
        QVERIFY(log.run().contains("loaded"));
        QCOMPARE(log.told("frame"), QStringList({"10x30", "200x30", "30x30"}));
        QCOMPARE(movie.content(), content);
    }

    void aFolderThatCannotBeWrittenCostsOnlyTheTemporaryFile()
    {
        ScratchFile movie("one.pvm");
        movie.setContent(frame(10));
        const QString folder = m_folder.filePath("not there");
        QVERIFY(told(movie.path(), folder).contains("loaded"));
        QVERIFY(!QFileInfo::exists(folder));
    }

    void eventsRunBetweenTheSteps()
    {
        QByteArray file = movieOf({frame(10), frame(20), frame(30)});
        file += QByteArray(3 * MovieScan::DefaultChunkBytes, 'x');
        ScratchFile movie("four.pvm");
        movie.setContent(file);
        MovieReader reader(movie.path(), m_folder.path());
        JobLog log(reader);
        // One event that posts the next comes round at least as often as there are steps: opening,
        // four chunks, three frames.
        int rounds = 0;
        std::function<void()> again = [&] {
            ++rounds;
            if (!log.isFinished())
                QMetaObject::invokeMethod(&log, again, Qt::QueuedConnection);
        };
        again();
        log.run();
        QCOMPARE(log.told("frame").size(), 3);
        QVERIFY2(rounds >= 8, qPrintable(QString::number(rounds)));
    }

    void aHandlerMayCancelIt_data()
    {
        const Rows<QString> row("at");
        for (const char* at : {"maximum", "value", "caption Done!", "frame", "loaded", "failed"})
            row(at, at);
    }

    void aHandlerMayCancelIt()
    {
        QFETCH(QString, at);
        ScratchFile movie("two.pvm");
        movie.setContent(at == "failed" ? QByteArray("no") : movieOf({frame(10), frame(20)}));
        MovieReader reader(movie.path(), m_folder.path());
        JobLog log(reader);
        const auto cancel = [&] {
            if (log.told().last().startsWith(at))
                reader.cancel();
        };
        reader.begin();
        connect(&reader, &MovieJob::MaximumChanged, cancel);
        connect(&reader, &MovieJob::ValueChanged, cancel);
        connect(&reader, &MovieJob::CaptionChanged, cancel);
        connect(&reader, &MovieJob::Failed, cancel);
        connect(&reader, &MovieReader::FrameRead, cancel);
        connect(&reader, &MovieReader::Loaded, cancel);
        Timer& timer = timerOf(reader, "tmrMovie");
        QTRY_VERIFY(!timer.Enabled());
        QVERIFY2(log.told().last().startsWith(at), qPrintable(log.told().join(", ")));
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(MovieReaderTest)
#include "tst_MovieReader.moc"
