// A list of pictures saved as a movie, step by step.
#include "viewer/movie/MovieWriter.h"

#include "picture/SaveImage.h"
#include "support/ChildCost.h"
#include "support/JobLog.h"
#include "support/OddPictures.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"
#include "support/TimeSeam.h"
#include "viewer/movie/MovieReader.h"

namespace {

ImageList pictures(int count)
{
    ImageList images;
    for (int i = 1; i <= count; ++i)
        images.Add(Still::fromImage(plainImage({10 * i, 30}, Qt::red)));
    return images;
}

QByteArray expectedMovie(const ImageList& images)
{
    QByteArrayList frames;
    for (int i = 1; i <= images.Count(); ++i)
        frames += encodeJpeg(images.Picture(i).image());
    return frames.join("&IMAGE&");
}

/// A movie file that pictures are saved in, which has not begun, with a folder for the temporary
/// file.
struct Writing
{
    explicit Writing(const ImageList& list)
        : images(list)
    {
    }

    const ScratchFile movie{"a.pvm"};
    const ScratchFile temporary{"pvm.jpg"};
    ImageList images;
    MovieWriter writer{movie.path(), temporary.folder(), images};
    JobLog log{writer};
};

} // namespace

class MovieWriterTest : public QObject
{
    Q_OBJECT
private slots:
    void theOrderIsAlwaysTheSame()
    {
        Writing w(pictures(3));
        w.writer.begin();
        QCOMPARE(w.log.told(), QStringList({"maximum 5", "value 0"}));
        QTRY_VERIFY(w.log.isFinished());
        QCOMPARE(
            w.log.told(),
            QStringList({"maximum 5", "value 0", "value 1", "caption Saving Image 1", "value 2",
                         "caption Saving Image 2", "value 3", "caption Saving Image 3", "value 4",
                         "caption Saving Movie...", "value 5", "caption Done!", "finished"}));
        QVERIFY(!timerOf(w.writer, "tmrMovie").Enabled());
        QCOMPARE(w.movie.content(), expectedMovie(w.images));
    }

    void anEmptyListIsAnEmptyFile()
    {
        Writing w(ImageList{});
        w.movie.setContent("an old movie");
        QCOMPARE(w.log.run(),
                 QStringList({"maximum 2", "value 0", "value 1", "caption Saving Movie...",
                              "value 2", "caption Done!", "finished"}));
        QCOMPARE(w.movie.content(), QByteArray());
    }

    void eachFrameIsEncodedAnew()
    {
        // A JPEG of another quality, and other formats.
        QByteArray fine;
        QBuffer buffer(&fine);
        QVERIFY(odd::scenery({64, 48}).save(&buffer, "jpg", 98));
        ImageList images;
        images.Add(Still::fromBytes(fine));
        images.Add(Still::fromBytes(smallGif()));
        images.Add(Still::fromBytes(encodedPicture({9, 5}, Qt::red, "png")));
        images.Add(Still::fromBytes(encodedPicture({9, 5}, Qt::red, "webp")));
        Writing w(images);
        w.log.run();
        QCOMPARE(w.movie.content(), expectedMovie(images));
        QVERIFY(!w.movie.content().contains(fine));
        for (const char* signature : {"GIF8", "PNG", "WEBP"})
            QVERIFY(!w.movie.content().contains(signature));
        QCOMPARE(w.movie.content().count("\xFF\xD8\xFF"), images.Count());
    }

    void anotherProgramReadsTheFrames()
    {
        ImageList images;
        images.Add(Still::fromImage(odd::scenery({64, 48})));
        Writing w(images);
        w.log.run();
        // One frame alone is a plain JPEG file.
        QProcess djpeg;
        djpeg.start("djpeg", {w.movie.path()});
        QVERIFY(djpeg.waitForFinished(HangMs));
        QCOMPARE(djpeg.exitCode(), 0);
        QCOMPARE(djpeg.readAllStandardError(), QByteArray());
        const QByteArray pixels = djpeg.readAllStandardOutput();
        const QByteArray header = "P6\n64 48\n255\n";
        QVERIFY(pixels.startsWith(header));
        QCOMPARE(pixels.size(), header.size() + 64 * 48 * 3);
    }

    void whatIsSavedLoadsAgain()
    {
        ImageList images;
        for (const QColor& colour : {QColor(Qt::red), QColor(Qt::green), QColor(Qt::blue)}) {
            QImage image = odd::scenery({80, 60});
            image.setPixelColor(40, 30, colour);
            images.Add(Still::fromBytes(encodedImage(image)));
        }
        Writing w(images);
        w.log.run();

        MovieReader reader(w.movie.path(), m_folder.path());
        QList<QImage> loaded;
        connect(&reader, &MovieReader::FrameRead, [&](const Still& one) { loaded += one.image(); });
        QVERIFY(JobLog(reader).run().contains("loaded"));
        QCOMPARE(loaded.size(), 3);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(loaded.at(i),
                     Still::fromBytes(encodeJpeg(images.Picture(i + 1).image())).image());
    }

    void aLongerFileOfBeforeIsGoneAltogether()
    {
        Writing w(pictures(2));
        w.movie.setContent(QByteArray(1'000'000, 'o'));
        w.log.run();
        QCOMPARE(w.movie.content(), expectedMovie(w.images));
        QCOMPARE(w.movie.names(), QStringList("a.pvm"));
    }

    void eachFrameLiesInTheTemporaryFileMeanwhile()
    {
        ImageList images;
        images.Add(Still::fromBytes(largePicture(50'000)));
        images.Add(Still::fromImage(plainImage({10, 10}, Qt::red)));
        Writing w(images);
        QByteArrayList seen;
        connect(&w.writer, &MovieJob::CaptionChanged, [&](const QString& caption) {
            if (caption.startsWith("Saving Image"))
                seen += w.temporary.content();
        });
        w.log.run();
        QCOMPARE(seen.join("&IMAGE&"), w.movie.content());
        // It stays, without the end of a longer one.
        QCOMPARE(w.temporary.content(), encodeJpeg(images.Picture(2).image()));
    }

    void anOldTemporaryFileIsNeverRead_data()
    {
        const Rows<QString> row("kind");
        for (const char* kind : {"folder", "pipe", "link", "must not be written"})
            row(kind, kind);
    }

    void anOldTemporaryFileIsNeverRead()
    {
        QFETCH(QString, kind);
        if (ranAsOrdinaryUser())
            return;
        ImageList images = pictures(1);
        // More than a pipe holds until somebody reads it.
        images.Add(Still::fromBytes(largePicture(100'000)));
        Writing w(images);
        const ScratchFile& old = w.temporary;
        ScratchFile target("target");
        target.setContent("precious");
        if (kind == "folder") {
            QVERIFY(QDir().mkdir(old.path()));
        } else if (kind == "pipe") {
            QCOMPARE(QProcess::execute("mkfifo", {old.path()}), 0);
        } else if (kind == "link") {
            QVERIFY(QFile::link(target.path(), old.path()));
        } else {
            old.setContent("old");
            QVERIFY(QFile::setPermissions(old.path(), QFile::ReadOwner));
        }
        QVERIFY(!w.log.run().contains("failed"));
        QCOMPARE(w.movie.content(), expectedMovie(images));
        QCOMPARE(target.content(), QByteArray("precious"));
        if (kind == "must not be written")
            QCOMPARE(old.content(), QByteArray("old"));
    }

    void aPictureThatCannotBeEncodedKeepsTheOldFile()
    {
        ImageList images = pictures(1);
        images.Add(Still());
        images.Add(Still::fromImage(plainImage({10, 10}, Qt::red)));
        Writing w(images);
        w.movie.setContent("an old movie");
        w.temporary.setContent(encodedPicture({8, 8}, Qt::red));
        QCOMPARE(w.log.run(), QStringList({"maximum 5", "value 0", "value 1",
                                           "caption Saving Image 1", "failed", "finished"}));
        QCOMPARE(w.movie.content(), QByteArray("an old movie"));
    }

    void whatCannotBeReplacedFails_data()
    {
        const Rows<QString, QString> row("path", "reason");
        row("a folder", m_folder.path(), "Is a directory");
        row("in a folder that is not there", m_folder.filePath("none/movie.pvm"),
            "No such file or directory");
        row("a device", "/dev/null", "Is no ordinary file");
        row("no name", {}, {}); // whatever the folder above says
    }

    void whatCannotBeReplacedFails()
    {
        // Where it is not refused, the system's device is in no danger.
        if (ranAsOrdinaryUser())
            return;
        QFETCH(QString, path);
        QFETCH(QString, reason);
        const ImageList images = pictures(1);
        MovieWriter writer(path, m_folder.path(), images);
        connect(&writer, &MovieJob::Failed, this,
                [&](const QString& told) { QCOMPARE(told, reason.isEmpty() ? told : reason); });
        QCOMPARE(JobLog(writer).run(),
                 QStringList({"maximum 3", "value 0", "value 1", "caption Saving Image 1",
                              "value 2", "caption Saving Movie...", "failed", "finished"}));
    }

    void whatMustNotBeWrittenKeepsTheOldFile()
    {
        if (ranAsOrdinaryUser())
            return;
        ScratchFile movie("old.pvm");
        movie.setContent("an old movie");
        const ImageList images = pictures(1);
        for (const QString& path : {movie.path(), movie.folder()}) {
            QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
            MovieWriter writer(movie.path(), movie.folder(), images);
            QVERIFY(JobLog(writer).run().contains("failed"));
            QCOMPARE(movie.content(), QByteArray("an old movie"));
            QVERIFY(QFile::setPermissions(path,
                                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        }
    }

    void entriesThatComeMeanwhileAreSavedToo()
    {
        Writing w(pictures(2));
        connect(&w.writer, &MovieJob::CaptionChanged, [&](const QString& caption) {
            if (caption == "Saving Image 2") {
                for (int i = 0; i < 3; ++i)
                    w.images.Add(Still::fromImage(plainImage({99, 9}, Qt::green)));
            }
        });
        w.log.run();
        // The bar counts with the entries of the beginning, and does not run over.
        QCOMPARE(w.log.told("maximum"), QStringList("4"));
        QCOMPARE(w.log.told("value"), QStringList({"0", "1", "2", "3", "4", "4", "4", "4"}));
        QCOMPARE(w.log.told("caption").mid(3, 3),
                 QStringList({"Saving Image 4", "Saving Image 5", "Saving Movie..."}));
        QCOMPARE(w.movie.content(), expectedMovie(w.images));
    }

    void entriesThatGoLoseNoOthersTheirTurn_data()
    {
        const Rows<QList<int>, QList<int>> row("removed", "frames");
        row("one that is saved", {1}, {1, 2, 3, 4, 5});
        row("all that are saved", {1, 1}, {1, 2, 3, 4, 5});
        row("the next", {3}, {1, 2, 4, 5});
        row("one of each", {4, 2}, {1, 2, 3, 5});
        row("one by one, all of them", {5, 4, 3, 2, 1}, {1, 2});
    }

    void entriesThatGoLoseNoOthersTheirTurn()
    {
        QFETCH(QList<int>, removed);
        QFETCH(QList<int>, frames);
        Writing w(pictures(5));
        connect(&w.writer, &MovieJob::CaptionChanged, [&](const QString& caption) {
            if (caption != "Saving Image 2")
                return;
            for (const int number : removed)
                w.images.Remove(number);
        });
        w.log.run();
        QVERIFY(!w.log.told().contains("failed"));
        QCOMPARE(w.log.told("maximum"), QStringList("7"));
        QCOMPARE(w.log.told("value").last(), "7");
        ImageList saved;
        for (const int number : frames)
            saved.Add(pictures(5).Picture(number));
        QCOMPARE(w.movie.content(), expectedMovie(saved));
    }

    void aListThatIsClearedIsNotSaved_data()
    {
        const Rows<QString, bool> row("at", "refilled");
        row("at once", "", false);
        row("between two frames", "Saving Image 2", false);
        row("with others since then", "Saving Image 2", true);
        row("after the last frame", "Saving Movie...", false);
    }

    void aListThatIsClearedIsNotSaved()
    {
        QFETCH(QString, at);
        QFETCH(bool, refilled);
        Writing w(pictures(5));
        w.movie.setContent("an old movie");
        QStringList reasons;
        connect(&w.writer, &MovieJob::Failed,
                [&](const QString& reason) { reasons.append(reason); });
        const auto clear = [&] {
            w.images.Clear();
            if (refilled)
                w.images.Add(pictures(1).Picture(1));
        };
        connect(&w.writer, &MovieJob::CaptionChanged, [&](const QString& caption) {
            if (caption == at)
                clear();
        });
        w.writer.begin();
        if (at.isEmpty())
            clear();
        QTRY_VERIFY(w.log.isFinished());
        QCOMPARE(reasons, QStringList("All images were deleted"));
        QCOMPARE(w.movie.content(), QByteArray("an old movie"));
    }

    void oneThatIsStoppedIsNotSaved()
    {
        Writing w(pictures(3));
        w.movie.setContent("an old movie");
        QStringList reasons;
        connect(&w.writer, &MovieJob::Failed,
                [&](const QString& reason) { reasons.append(reason); });
        connect(&w.writer, &MovieJob::CaptionChanged, [&] { w.writer.stop(); });
        QVERIFY(w.log.run().contains("failed"));
        QCOMPARE(reasons, QStringList("Saving was stopped"));
        QCOMPARE(w.movie.content(), QByteArray("an old movie"));
    }

    void savedIsToldWhenTheFileIsThere()
    {
        Writing w(pictures(2));
        QByteArray seen;
        connect(&w.writer, &MovieWriter::Saved, [&] { seen = w.movie.content(); });
        w.log.run();
        QCOMPARE(seen, expectedMovie(w.images));
    }

    void cancellingKeepsTheOldFile_data()
    {
        const Rows<QString> row("at");
        for (const char* at :
             {"value 0", "value 1", "caption Saving Image 2", "value 3", "caption Saving Movie..."})
            row(at, at);
    }

    void cancellingKeepsTheOldFile()
    {
        QFETCH(QString, at);
        Writing w(pictures(2));
        w.movie.setContent("an old movie");
        const auto cancel = [&] {
            if (w.log.told().last() == at)
                w.writer.cancel();
        };
        connect(&w.writer, &MovieJob::ValueChanged, cancel);
        connect(&w.writer, &MovieJob::CaptionChanged, cancel);
        w.writer.begin();
        Timer& timer = timerOf(w.writer, "tmrMovie");
        QTRY_VERIFY(!timer.Enabled());
        QCOMPARE(w.log.told().last(), at);
        QCOMPARE(w.movie.content(), QByteArray("an old movie"));
        QCOMPARE(w.movie.names(), QStringList("a.pvm"));
    }

    void eventsRunBetweenTheSteps()
    {
        Writing w(pictures(5));
        // One round a step at least: five frames, and two at the end.
        const int rounds = w.log.roundsOfEvents();
        QVERIFY2(rounds >= 7, qPrintable(QString::number(rounds)));
    }

private:
    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(MovieWriterTest)
#include "tst_MovieWriter.moc"
