#include "shared/ReadFile.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"

#include <memory>
#include <optional>

class ReadFileTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void readsAFileWhole()
    {
        QByteArray bytes;
        for (int i = 0; i < 100'000; ++i)
            bytes += static_cast<char>(i * 7);
        writeFile(at("a"), bytes);
        QCOMPARE(readFile(at("a"), 1'000'000), std::optional(bytes));
        writeFile(at("empty"), {});
        QVERIFY(readFile(at("empty"), 0).has_value());
        QVERIFY(readFile(at("empty"), 0)->isEmpty());
        QVERIFY(QFile::link(at("a"), at("link")));
        QCOMPARE(readFile(at("link"), 1'000'000), std::optional(bytes));
    }

    void readsUpToTheBoundAndNotBeyond()
    {
        writeFile(at("a"), "0123456789");
        QCOMPARE(readFile(at("a"), 10), std::optional(QByteArray("0123456789")));
        QCOMPARE(readFile(at("a"), 9), std::nullopt);
        // A terabyte of nothing is refused by its size, not by reading it.
        QFile huge(at("huge"));
        QVERIFY(huge.open(QIODevice::WriteOnly));
        QVERIFY(huge.resize(1LL << 40));
        QCOMPARE(readFile(huge.fileName(), 1'000'000), std::nullopt);
    }

    void aMissingFileIsNothing()
    {
        QCOMPARE(readFile(at("none"), 10), std::nullopt);
        QCOMPARE(readFile(at("none/none"), 10), std::nullopt);
        QCOMPARE(readFile({}, 10), std::nullopt);
        QVERIFY(QFile::link(at("none"), at("link")));
        QCOMPARE(readFile(at("link"), 10), std::nullopt);
    }

    void aFolderIsNothing() { QCOMPARE(readFile(m_folder->path(), 10), std::nullopt); }

    void aPipeIsNotWaitedFor()
    {
        // A hang ends this test by the time limit of its own process.
        if (ranAsOrdinaryUser())
            return;
        const QString pipe = at("pipe");
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
        const QString path = at("a");
        writeFile(path, "text");
        QVERIFY(readFile(path, 10).has_value());
        QVERIFY(QFile::setPermissions(path, {}));
        QCOMPARE(readFile(path, 10), std::nullopt);
    }

private:
    QString at(const QString& name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(ReadFileTest)
#include "tst_ReadFile.moc"
