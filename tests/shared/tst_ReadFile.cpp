#include "shared/ReadFile.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"

#include <optional>

class ReadFileTest : public QObject
{
    Q_OBJECT
private slots:
    void readsAFileWhole()
    {
        QTemporaryDir folder;
        QByteArray bytes;
        for (int i = 0; i < 100'000; ++i)
            bytes += static_cast<char>(i * 7);
        writeFile(folder.filePath("a"), bytes);
        QCOMPARE(readFile(folder.filePath("a"), 1'000'000), std::optional(bytes));
        writeFile(folder.filePath("empty"), {});
        QVERIFY(readFile(folder.filePath("empty"), 0).has_value());
        QVERIFY(readFile(folder.filePath("empty"), 0)->isEmpty());
        QVERIFY(QFile::link(folder.filePath("a"), folder.filePath("link")));
        QCOMPARE(readFile(folder.filePath("link"), 1'000'000), std::optional(bytes));
    }

    void readsUpToTheBoundAndNotBeyond()
    {
        QTemporaryDir folder;
        writeFile(folder.filePath("a"), "0123456789");
        QCOMPARE(readFile(folder.filePath("a"), 10), std::optional(QByteArray("0123456789")));
        QCOMPARE(readFile(folder.filePath("a"), 9), std::nullopt);
        // A terabyte of nothing is refused by its size, not by reading it.
        QFile huge(folder.filePath("huge"));
        QVERIFY(huge.open(QIODevice::WriteOnly));
        QVERIFY(huge.resize(1LL << 40));
        QCOMPARE(readFile(huge.fileName(), 1'000'000), std::nullopt);
    }

    void aMissingFileIsNothing()
    {
        QTemporaryDir folder;
        QCOMPARE(readFile(folder.filePath("none"), 10), std::nullopt);
        QCOMPARE(readFile(folder.filePath("none/none"), 10), std::nullopt);
        QCOMPARE(readFile({}, 10), std::nullopt);
        QVERIFY(QFile::link(folder.filePath("none"), folder.filePath("link")));
        QCOMPARE(readFile(folder.filePath("link"), 10), std::nullopt);
    }

    void aFolderIsNothing()
    {
        QTemporaryDir folder;
        QCOMPARE(readFile(folder.path(), 10), std::nullopt);
    }

    void aPipeIsNotWaitedFor()
    {
        // A hang ends this test by the time limit of its own process.
        if (ranAsOrdinaryUser())
            return;
        QTemporaryDir folder;
        const QString pipe = folder.filePath("pipe");
        QCOMPARE(QProcess::execute("mkfifo", {pipe}), 0);
        QCOMPARE(readFile(pipe, 10), std::nullopt);
    }

    void aDeviceIsNothing()
    {
        QCOMPARE(readFile("/dev/zero", 10), std::nullopt);
        QCOMPARE(readFile("/dev/null", 10), std::nullopt);
    }

    void aFileWhoseSizeIsNotKnownIsRead()
    {
        // It says 0 and has some hundred bytes, as one that grows while it is read.
        const auto bytes = readFile("/proc/self/status", 100'000);
        QVERIFY(bytes.has_value());
        QVERIFY(bytes->startsWith("Name:"));
        QVERIFY(bytes->endsWith('\n'));
        QCOMPARE(readFile("/proc/self/status", 100), std::nullopt);
    }

    void anUnreadableFileIsNothing()
    {
        if (ranAsOrdinaryUser())
            return;
        QTemporaryDir folder;
        const QString path = folder.filePath("a");
        writeFile(path, "text");
        QVERIFY(readFile(path, 10).has_value());
        QVERIFY(QFile::setPermissions(path, {}));
        QCOMPARE(readFile(path, 10), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(ReadFileTest)
#include "tst_ReadFile.moc"
