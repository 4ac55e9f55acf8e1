#include "platform/files/FileStamp.h"
#include "settings/Ini.h"
#include "settings/IniCache.h"
#include "support/Cost.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"
#include "support/TimeSeam.h"

#include <algorithm>
#include <functional>
#include <memory>

static Timer& flushTimer()
{
    auto* cache = QCoreApplication::instance()->findChild<IniCache*>();
    if (!cache)
        qFatal("no cache");
    return timerOf(*cache, "tmrIniFlush");
}

/// The read calls of this process so far.
static int readCalls()
{
    QFile file("/proc/self/io");
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const auto match = QRegularExpression("syscr: (\\d+)").match(file.readAll());
    return match.captured(1).toInt();
}

/// What the program of the test above does.
static int writeAndEnd(int argc, char* argv[])
{
    const QByteArray how = argv[2];
    const QString path = QString::fromLocal8Bit(argv[3]);
    const auto write = [&path] {
        WriteToINI("S", "A", "1", path);
        WriteToINI("S", "B", "2", path);
        return GetFromINI("S", "A", path) == "1" && GetFromINI("S", "B", path) == "2";
    };
    if (how == "none")
        return write() && FlushINI() ? 0 : 1;
    QCoreApplication application(argc, argv);
    if (how == "gone")
        return write() && !QFile::exists(path) ? 0 : 1;
    bool good = false;
    QTimer::singleShot(0, &application, [&] {
        good = write() && !QFile::exists(path);
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    return good && QFile::exists(path) ? 0 : 1;
}

class IniCacheTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_file = std::make_unique<ScratchFile>("pref.ini");
        m_path = m_file->path();
    }

    void cleanup() { FlushINI(); }

    void manyWritesTouchTheDiskOnce()
    {
        setContent("[S]\r\nOLD=1\r\n");
        const FileStamp before = fileStamp(m_path);
        for (int i = 0; i < 500; ++i) {
            const QString key = QString("KEY%1").arg(i);
            WriteToINI("S", key, "value", m_path);
            QCOMPARE(GetFromINI("S", key, m_path), QString("value"));
            QVERIFY(fileStamp(m_path) == before);
        }
        QVERIFY(flushTimer().Enabled());
        flushTimer().elapse();
        const FileStamp after = fileStamp(m_path);
        QVERIFY(after.inode != before.inode);
        QVERIFY(content().startsWith("[S]\r\nOLD=1\r\nKEY0=value\r\nKEY1=value\r\n"));
        QVERIFY(content().endsWith("KEY499=value\r\n"));
        // That was the only time.
        QVERIFY(!flushTimer().Enabled());
        QVERIFY(FlushINI());
        QVERIFY(fileStamp(m_path) == after);
        QCOMPARE(GetFromINI("S", "KEY7", m_path), QString("value"));
    }

    void manyReadsTouchTheDiskOnce()
    {
        setContent("[S]\r\nKEY=value\r\n");
        waitUntilSettled();
        const int before = readCalls();
        QVERIFY(before > 0);
        for (int i = 0; i < 1000; ++i)
            QCOMPARE(GetFromINI("S", "KEY", m_path), QString("value"));
        const int calls = readCalls() - before;
        QVERIFY2(calls < 20, qPrintable(QString::number(calls)));
    }

    void everyWriteBeginsTheQuietAnew()
    {
        WriteToINI("S", "A", "0", m_path);
        // Both end in the same time from now, this one first; a quiet that begins anew is second.
        flushTimer().setInterval(1);
        bool written = false;
        bool writtenBefore = true;
        const QObject here; // The timer goes on after this test.
        QTimer::singleShot(1, &here, [&] { writtenBefore = written; });
        connect(&flushTimer(), &Timer::Tick, &here, [&] { written = true; });
        WriteToINI("S", "A", "1", m_path);
        QTRY_VERIFY(written);
        flushTimer().setInterval(IniCache::QuietMs);
        QVERIFY(!writtenBefore);
        QCOMPARE(content(), QByteArray("[S]\r\nA=1\r\n"));
    }

    void aRunEndsByItselfAfterSomeQuiet()
    {
        WriteToINI("S", "A", "1", m_path);
        QVERIFY(!QFile::exists(m_path));
        QCOMPARE(flushTimer().Interval(), 200);
        QTRY_COMPARE(content(), QByteArray("[S]\r\nA=1\r\n"));
        QVERIFY(!flushTimer().Enabled());
    }

    void writingWhatIsThereLeavesTheFileAlone()
    {
        setContent("[S]\nA = 1\n");
        const FileStamp before = fileStamp(m_path);
        WriteToINI("S", "A", "1", m_path);
        QVERIFY(FlushINI());
        QVERIFY(fileStamp(m_path) == before);
    }

    void twoSpellingsOfAPathAreOneFile()
    {
        WriteToINI("S", "A", "1", m_path);
        QCOMPARE(GetFromINI("S", "A", m_file->folder() + "//x/../pref.ini"), QString("1"));
        QCOMPARE(GetFromINI("S", "A", QDir().relativeFilePath(m_path)), QString("1"));
    }

    void eachOfTenThousandFavouritesCostsTheSame()
    {
        // What a start and a shut-down do with them.
        constexpr int few = 1'000;
        const QTemporaryDir folder;
        int files = 0;
        const auto write = [](int count, const QString& path) {
            for (int i = 0; i < count; ++i) {
                WriteToINI("FAVORITES", QString("NAME[%1]").arg(i), "Camera", path);
                WriteToINI("FAVORITES", QString("URL[%1]").arg(i), "http://example.com/a.jpg",
                           path);
            }
            WriteToINI("FAVORITES", "COUNT", QString::number(count), path);
            QVERIFY(FlushINI());
        };
        const auto pathOf = [&](int count) { return folder.filePath(QString::number(count)); };
        const auto read = [&](int count) {
            const QString path = pathOf(count);
            int right = 0;
            for (int i = 0; i < GetFromINI("FAVORITES", "COUNT", path).toInt(); ++i) {
                right += GetFromINI("FAVORITES", QString("NAME[%1]").arg(i), path) == "Camera";
                right += GetFromINI("FAVORITES", QString("URL[%1]").arg(i), path).endsWith("a.jpg");
            }
            QCOMPARE(right, 2 * count);
        };
        const double writing = growth(
            few, [&](int count) { write(count, folder.filePath(QString("new%1").arg(++files))); });
        for (const int count : {few, 10 * few})
            write(count, pathOf(count));
        const double justWritten = growth(few, read);
        setContent({});
        waitUntilSettled();
        const double reading = growth(few, read);
        // Writing all of them once more, with nothing new in them.
        const double again = growth(few, [&](int count) { write(count, pathOf(count)); });
        qInfo("ten times as many: %.1f times to write, %.1f to read, %.1f just after they were "
              "written, %.1f to write again",
              writing, reading, justWritten, again);
        for (const double times : {writing, reading, justWritten, again})
            QVERIFY(times < MostGrowth);
    }

    void aReadNoticesAChangeFromOutside()
    {
        QCOMPARE(GetFromINI("S", "A", m_path), QString());
        setContent("[S]\nA=1\n");
        QCOMPARE(GetFromINI("S", "A", m_path), QString("1"));
        // The same file, as long as before, in the same moment.
        for (int i = 2; i < 10; ++i) {
            setContent("[S]\nA=" + QByteArray::number(i) + "\n");
            QCOMPARE(GetFromINI("S", "A", m_path), QString::number(i));
        }
        // Later, and with the old file's time.
        waitUntilSettled();
        QCOMPARE(GetFromINI("S", "A", m_path), QString("9"));
        const QDateTime time = QFileInfo(m_path).lastModified();
        {
            QFile file(m_path);
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.seek(6));
            QVERIFY(file.putChar('x'));
            QVERIFY(file.flush());
            QVERIFY(file.setFileTime(time, QFile::FileModificationTime));
        }
        QCOMPARE(GetFromINI("S", "A", m_path), QString("x"));
        waitUntilSettled();
        QCOMPARE(GetFromINI("S", "A", m_path), QString("x"));
        QVERIFY(QFile::remove(m_path));
        QCOMPARE(GetFromINI("S", "A", m_path), QString());
    }

    void aChangeWithinOneStepOfTheClockIsNoticed()
    {
        if (ranWithOwnMounts())
            return;
        QCOMPARE(mountCoarseClock(m_file->folder()), "mounted");
        int sameStamp = 0;
        FileStamp before;
        for (int i = 100; i < 300; ++i) {
            setContent("[S]\nA=" + QByteArray::number(i) + "\n");
            const FileStamp stamp = fileStamp(m_path);
            sameStamp += stamp == before;
            before = stamp;
            QCOMPARE(GetFromINI("S", "A", m_path), QString::number(i));
        }
        QVERIFY(sameStamp > 0); // or it was no test
    }

    void anotherInstancesWriteBetweenTwoRunsIsKept()
    {
        WriteToINI("S", "MINE", "1", m_path);
        QVERIFY(FlushINI());
        setContent(content() + "THEIRS=2\r\n");
        WriteToINI("S", "MINE", "3", m_path);
        QCOMPARE(GetFromINI("S", "THEIRS", m_path), QString("2"));
        QVERIFY(FlushINI());
        QCOMPARE(content(), QByteArray("[S]\r\nMINE=3\r\nTHEIRS=2\r\n"));
    }

    void anotherInstancesWriteDuringARunIsKept()
    {
        setContent("[S]\r\nOLD=1\r\nGONE=1\r\nBOTH=1\r\n");
        WriteToINI("S", "MINE", "1", m_path);
        WriteToINI("S", "BOTH", "mine", m_path);
        RemoveFromINI("S", "GONE", m_path);
        setContent("[S]\r\nOLD=2\r\nGONE=2\r\nBOTH=theirs\r\nTHEIRS=2\r\n");
        QVERIFY(FlushINI());
        QCOMPARE(content(), QByteArray("[S]\r\nOLD=2\r\nBOTH=mine\r\nTHEIRS=2\r\nMINE=1\r\n"));
        QCOMPARE(GetFromINI("S", "OLD", m_path), "2");
    }

    void whatAnotherInstanceRemovedWithTheFileIsWrittenAgain()
    {
        setContent("[S]\r\nOLD=1\r\n");
        WriteToINI("S", "MINE", "1", m_path);
        QVERIFY(QFile::remove(m_path));
        QVERIFY(FlushINI());
        QCOMPARE(content(), QByteArray("[S]\r\nOLD=1\r\nMINE=1\r\n"));
    }

    void aRunIsReadAnewWhenAsked()
    {
        setContent("[S]\r\nOLD=1\r\n");
        WriteToINI("S", "MINE", "1", m_path);
        setContent("[S]\r\nOLD=2\r\n");
        QCOMPARE(GetFromINI("S", "OLD", m_path), "1");
        RefreshINI(m_path);
        QCOMPARE(GetFromINI("S", "OLD", m_path), "2");
        QCOMPARE(GetFromINI("S", "MINE", m_path), "1");
    }

    void whatAKilledSaveLeftIsRemoved()
    {
        setContent("[S]\r\nA=1\r\n");
        writeFile(m_path + ".aBcDeF", "half");
        WriteToINI("S", "A", "1", m_path);
        QVERIFY(FlushINI());
        QVERIFY(QFile::exists(m_path + ".aBcDeF")); // nothing was written
        WriteToINI("S", "A", "2", m_path);
        QVERIFY(FlushINI());
        QCOMPARE(m_file->names(), QStringList("pref.ini"));
    }

    void aFailedFlushSaysWhy()
    {
        QString reason = "none";
        WriteToINI("S", "A", "1", m_path);
        QVERIFY(FlushINI(&reason));
        QCOMPARE(reason, "");
        WriteToINI("S", "A", "1", m_path + "/none/pref.ini");
        QVERIFY(!FlushINI(&reason));
        QVERIFY(!reason.isEmpty());
    }

    void waitingEventsRunOnceBeforeAWriteReturns()
    {
        int ran = 0;
        std::function<void()> event = [&] {
            ++ran;
            if (ran < 100)
                QMetaObject::invokeMethod(this, event, Qt::QueuedConnection);
        };
        QMetaObject::invokeMethod(this, event, Qt::QueuedConnection);
        WriteToINI("S", "A", "1", m_path);
        QVERIFY(ran >= 1);
        QVERIFY(ran < 100);
        ran = 100;
        QCoreApplication::processEvents();
    }

    void writesInsideEventsDoNotPileUp()
    {
        int depth = 0;
        int deepest = 0;
        int ran = 0;
        std::function<void()> handler = [&] {
            deepest = std::max(deepest, ++depth);
            if (ran < 49) // something new waits while this one writes
                QMetaObject::invokeMethod(this, handler, Qt::QueuedConnection);
            WriteToINI("S", QString("K%1").arg(++ran), "1", m_path);
            --depth;
        };
        QMetaObject::invokeMethod(this, handler, Qt::QueuedConnection);
        WriteToINI("S", "A", "1", m_path);
        QTRY_COMPARE(ran, 50);
        // One event of the loop here, and one that its write let run.
        QVERIFY2(deepest <= 2, qPrintable(QString::number(deepest)));
        QVERIFY(FlushINI());
        QCOMPARE(content().count("=1"), 51);
    }

    void everythingIsOnTheDiskWhenTheApplicationEnds_data()
    {
        const Rows<QString> row("how");
        row("quit", "quit");
        row("application object gone", "gone");
        row("no application object", "none");
    }

    void everythingIsOnTheDiskWhenTheApplicationEnds()
    {
        QFETCH(QString, how);
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QCoreApplication::applicationFilePath(), {"--write", how, m_path});
        QVERIFY(process.waitForFinished(HangMs));
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(process.readAll(), QByteArray());
        QCOMPARE(content(), QByteArray("[S]\r\nA=1\r\nB=2\r\n"));
    }

private:
    QByteArray content() const { return m_file->content(); }
    void setContent(const QByteArray& bytes) const { m_file->setContent(bytes); }
    void waitUntilSettled() const { m_file->waitUntilSettled(); }

    std::unique_ptr<ScratchFile> m_file;
    QString m_path;
};

int main(int argc, char* argv[])
{
    if (argc == 4 && QByteArray(argv[1]) == "--write")
        return writeAndEnd(argc, argv);
    QCoreApplication application(argc, argv);
    IniCacheTest test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_IniCache.moc"
