// What reading a movie file costs, whatever it holds.
#include "viewer/movie/MovieReader.h"

#include "support/ChildCost.h"
#include "support/Cost.h"
#include "support/JobLog.h"
#include "support/Pictures.h"
#include "support/ScratchFile.h"

/// The sanitizers need memory of their own.
#ifdef __SANITIZE_ADDRESS__
#define VERIFY_PEAK(cost, megabytes) QVERIFY((cost).peakMegabytes > 0)
#else
#define VERIFY_PEAK(cost, megabytes)                                                               \
    QVERIFY2((cost).peakMegabytes < (megabytes), qPrintable(QString::number((cost).peakMegabytes)))
#endif

namespace {

/// In a process of its own: reads the file that is named after it.
constexpr auto ReadOption = "--read";
constexpr int Loads = 10;
constexpr int Fails = 11;

} // namespace

/// With arguments as the tests give them: reads that file and ends.

class MovieReaderBoundsTest : public QObject
{
    Q_OBJECT
private slots:
    void twoGigabytesOfNothingCostLittle()
    {
        const QString path = m_folder.filePath("huge.pvm");
        QCOMPARE(QProcess::execute("truncate", {"-s", "2G", path}), 0);
        const ChildCost cost = costOfChild({ReadOption, path});
        QCOMPARE(cost.exitCode, Fails);
        VERIFY_PEAK(cost, 100);
        // Nothing reads on once it is longer than any picture.
        const QString longer = m_folder.filePath("longer.pvm");
        QCOMPARE(QProcess::execute("truncate", {"-s", "80M", longer}), 0);
        QList<double> costs;
        QList<double> ofLonger;
        for (int run = 0; run < 3; ++run) {
            ofLonger << costOfChild({ReadOption, longer}).seconds;
            costs << costOfChild({ReadOption, path}).seconds;
        }
        const double times = median(costs) / median(ofLonger);
        qInfo("%.2f times a file of 80 MB", times);
        QVERIFY(times < 5);
        QVERIFY(QFile::remove(path));
    }

    void aFileOfSeparatorsCostsLittle()
    {
        ScratchFile movie("separators.pvm");
        movie.setContent(MovieSeparator.toByteArray().repeated(5'000'000));
        const ChildCost cost = costOfChild({ReadOption, movie.path()});
        QCOMPARE(cost.exitCode, Fails);
        VERIFY_PEAK(cost, 100);
    }

    void aFileOfTheShortestPartsCostsNoMoreThanItsSize()
    {
        // Beside what an empty program holds.
        const QByteArray part = QByteArray(MoviePart::MinBytes, 'x') + MovieSeparator.toByteArray();
        ScratchFile small("small.pvm");
        small.setContent(part.repeated(1000));
        const ChildCost least = costOfChild({ReadOption, small.path()});
        QCOMPARE(least.exitCode, Fails);

        constexpr int parts = 5'000'000;
        ScratchFile movie("parts.pvm");
        movie.setContent(part.repeated(parts));
        const ChildCost cost = costOfChild({ReadOption, movie.path()});
        QCOMPARE(cost.exitCode, Fails);
        VERIFY_PEAK(cost, least.peakMegabytes + double(part.size()) * parts / 1e6);
    }

    void aFrameIsDecodedAtAnEighth()
    {
        // Whole it has 192 MB.
        const QString path = m_folder.filePath("large.pvm");
        writeFile(path, encodedPicture({8000, 6000}, Qt::red));
        const ChildCost cost = costOfChild({ReadOption, path});
        QCOMPARE(cost.exitCode, Loads);
        VERIFY_PEAK(cost, 100);
    }

private:
    QTemporaryDir m_folder;
};

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 3 && arguments[1] == ReadOption) {
        const QTemporaryDir folder;
        MovieReader reader(arguments[2], folder.path());
        return JobLog(reader).run().contains("loaded") ? Loads : Fails;
    }
    MovieReaderBoundsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_MovieReaderBounds.moc"
