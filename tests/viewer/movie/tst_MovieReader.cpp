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
#include <string>

namespace {

QByteArray frame(int width, const QColor& colour = Qt::red)
{
    return encodedPicture({width, 30}, colour);
}

QByteArray movieOf(const QByteArrayList& frames)
{
    return frames.join(MovieSeparator.toByteArray());
}

/// A movie file and its reader, which has not begun, with a folder for its temporary file.
struct Reading
{
    explicit Reading(const QByteArray& content) { movie.setContent(content); }
    bool loads() { return log.run().contains("loaded"); }

    const ScratchFile movie{"a.pvm"};
    const ScratchFile temporary{"tt.jpg"};
    MovieReader reader{movie.path(), temporary.folder()};
    JobLog log{reader};
};

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
        Reading r(movieOf({frame(10), frame(20), frame(30)}));
        r.reader.begin();
        // Nothing but this within begin(): the window is shown before the file is opened.
        QCOMPARE(r.log.told(), QStringList({"value 0", "caption Loading Movie..."}));
        QTRY_VERIFY(r.log.isFinished());
        QCOMPARE(r.log.told(),
                 QStringList({"value 0", "caption Loading Movie...", "maximum 3", "value 1",
                              "frame 10x30", "value 2", "frame 20x30", "value 3", "frame 30x30",
                              "caption Done!", "loaded", "finished"}));
        QVERIFY(!timerOf(r.reader, "tmrMovie").Enabled());
    }

    void theFramesAreTheFilesBytes()
    {
        const QByteArrayList frames{frame(10, Qt::red), largePicture(100'000), frame(10, Qt::blue)};
        Reading r(movieOf(frames));
        QByteArrayList got;
        connect(&r.reader, &MovieReader::FrameRead, [&](const Still& one) { got += one.bytes(); });
        QVERIFY(r.loads());
        QCOMPARE(got, frames);
    }

    void everyFrameIsGiven_data()
    {
        const Rows<QByteArray, QStringList> row("content", "frames");
        row("one, without a separator", frame(12), {"12x30"});
        row("of other kinds and sizes",
            movieOf({smallGif(), encodedPicture({7, 5}, Qt::green, "bmp"), frame(300)}),
            {"2x2", "7x5", "300x30"});
        row("png and webp",
            movieOf({encodedPicture({11, 5}, Qt::green, "png"),
                     encodedPicture({13, 7}, Qt::blue, "webp")}),
            {"11x5", "13x7"});
        QByteArrayList many;
        QStringList sizes;
        for (int width = 1; width <= 60; ++width) {
            many += frame(width);
            sizes += QString("%1x30").arg(width);
        }
        row("more than 45", movieOf(many), sizes);
    }

    void everyFrameIsGiven()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, frames);
        Reading r(content);
        QVERIFY(r.loads());
        QCOMPARE(r.log.told("frame"), frames);
        QCOMPARE(r.log.told("maximum"), QStringList(QString::number(frames.size())));
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
        row("a picture of another kind", "other.pvm", encodedPicture({9, 9}, Qt::red, "ppm"), true);
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
        Reading r(movieOf({frame(10), frame(20), bad, frame(30)}));
        QCOMPARE(r.log.run(),
                 QStringList({"value 0", "caption Loading Movie...", "maximum " + maximum,
                              "value 1", "frame 10x30", "value 2", "frame 20x30", "value 3",
                              "failed", "finished"}));
        const qint64 frames = std::max(frame(10).size(), frame(20).size());
        QCOMPARE(QFileInfo(r.temporary.path()).size(), std::max(frames, written));
    }

    void aFileCutAtEachByteNearASeparatorGivesWhatItHolds_data()
    {
        const Rows<int> row("cut");
        // Counted from the beginning of the second separator. A JPEG without its last bytes is one.
        for (int cut = -12; cut <= 20; ++cut)
            row(std::to_string(cut), cut);
    }

    void aFileCutAtEachByteNearASeparatorGivesWhatItHolds()
    {
        QFETCH(int, cut);
        const bool loads = cut < MovieSeparator.size();            // the second frame is the last
        QLoggingCategory::setFilterRules("qt.gui.imageio*=false"); // some end early
        const QByteArray firstTwo = movieOf({frame(40), frame(50)});
        const QByteArray whole = movieOf({frame(40), frame(50), frame(60)});
        Reading r(whole.left(firstTwo.size() + cut));
        QCOMPARE(r.loads(), loads);
        QCOMPARE(r.log.told("frame"), (QStringList{"40x30", "50x30"}));
        QCOMPARE(r.log.told().contains("failed"), !loads);
        QCOMPARE(r.log.told().count("finished"), 1);
    }

    void aSeparatorAcrossTwoChunksIsFound()
    {
        // A JPEG may be followed by anything.
        const QByteArray first = frame(40);
        for (int before = 0; before <= MovieSeparator.size(); ++before) {
            const QByteArray filled =
                first + QByteArray(MovieScan::DefaultChunkBytes - first.size() - before, 'x');
            Reading r(movieOf({filled, frame(50)}));
            QVERIFY(r.loads());
            QCOMPARE(r.log.told("frame"), QStringList({"40x30", "50x30"}));
        }
    }

    void aFileThatBecomesShorterFails()
    {
        // Between the two passes, and in the middle of the second.
        Reading r(movieOf({frame(10), frame(20), frame(30)}));
        connect(&r.reader, &MovieReader::FrameRead,
                [&] { QVERIFY(QFile::resize(r.movie.path(), frame(10).size() + 20)); });
        r.log.run();
        QCOMPARE(r.log.told("frame"), QStringList("10x30"));
        QCOMPARE(r.log.told().mid(r.log.told().size() - 3),
                 QStringList({"value 2", "failed", "finished"}));

        Reading second(QByteArray(3 * MovieScan::DefaultChunkBytes, 'x'));
        second.reader.begin();
        timerOf(second.reader, "tmrMovie").elapse(); // opens it
        timerOf(second.reader, "tmrMovie").elapse(); // the first chunk
        QVERIFY(QFile::resize(second.movie.path(), 1000));
        QTRY_VERIFY(second.log.isFinished());
        QCOMPARE(second.log.told(), FailsAtOnce);
    }

    void aFileThatIsReplacedMeanwhileIsReadAsItWas()
    {
        Reading r(movieOf({frame(10), frame(20), frame(30)}));
        ScratchFile other("new.pvm");
        other.setContent("something else");
        connect(&r.reader, &MovieJob::MaximumChanged, [&] {
            QVERIFY(QFile::remove(r.movie.path()));
            QVERIFY(QFile::rename(other.path(), r.movie.path()));
        });
        QVERIFY(r.loads());
        QCOMPARE(r.log.told("frame").size(), 3);
    }

    void eachFrameLiesInTheTemporaryFileMeanwhile()
    {
        const QByteArrayList frames{frame(10), frame(20), frame(40)};
        Reading r(movieOf(frames));
        QByteArrayList seen;
        connect(&r.reader, &MovieReader::FrameRead,
                [&](const Still& one) { seen += r.temporary.content().left(one.bytes().size()); });
        QVERIFY(r.loads());
        QCOMPARE(seen, frames);
        QCOMPARE(r.temporary.names(), QStringList("tt.jpg"));
    }

    void theOldEndOfTheTemporaryFileStays()
    {
        const QByteArray old(50'000, 'o');
        const QByteArrayList frames{largePicture(10'000), frame(10)};
        Reading r(movieOf(frames));
        r.temporary.setContent(old);
        QVERIFY(r.loads());
        QCOMPARE(r.temporary.content(), frames.at(1) + frames.at(0).mid(frames.at(1).size()) +
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
        // More than a pipe holds until somebody reads it.
        Reading r(movieOf({frame(10), largePicture(100'000)}));
        const QString path = r.temporary.path();
        if (kind == "folder") {
            QVERIFY(QDir().mkdir(path));
        } else if (kind == "pipe") {
            QCOMPARE(QProcess::execute("mkfifo", {path}), 0);
        } else {
            if (kind == "link")
                target.setContent("precious");
            QVERIFY(QFile::link(target.path(), path));
        }
        QVERIFY(r.loads());
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
        Reading r(file);
        // At least as many as there are steps: opening, four chunks, three frames.
        const int rounds = r.log.roundsOfEvents();
        QCOMPARE(r.log.told("frame").size(), 3);
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
        Reading r(at == "failed" ? QByteArray("no") : movieOf({frame(10), frame(20)}));
        const auto cancel = [&] {
            if (r.log.told().last().startsWith(at))
                r.reader.cancel();
        };
        r.reader.begin();
        connect(&r.reader, &MovieJob::MaximumChanged, cancel);
        connect(&r.reader, &MovieJob::ValueChanged, cancel);
        connect(&r.reader, &MovieJob::CaptionChanged, cancel);
        connect(&r.reader, &MovieJob::Failed, cancel);
        connect(&r.reader, &MovieReader::FrameRead, cancel);
        connect(&r.reader, &MovieReader::Loaded, cancel);
        Timer& timer = timerOf(r.reader, "tmrMovie");
        QTRY_VERIFY(!timer.Enabled());
        QVERIFY2(r.log.told().last().startsWith(at), qPrintable(r.log.told().join(", ")));
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(MovieReaderTest)
#include "tst_MovieReader.moc"
