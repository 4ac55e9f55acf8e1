#include "platform/files/FileLock.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <memory>

using Result = FileLock::Result;

class FileLockTest : public QObject
{
    Q_OBJECT
private slots:
    void isHeldByOneAtATime()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("lock");
        auto first = std::make_unique<FileLock>();
        FileLock second;
        QCOMPARE(first->take(path), Result::Taken);
        QCOMPARE(first->take(path), Result::Taken);
        QCOMPARE(second.take(path), Result::HeldByAnother);
        first->release();
        QCOMPARE(second.take(path), Result::Taken);
        QCOMPARE(first->take(path), Result::HeldByAnother);
        second.release();
        second.release();
        QCOMPARE(first->take(path), Result::Taken);
        first.reset();
        QCOMPARE(second.take(path), Result::Taken);
        QCOMPARE(QFile::permissions(path) & QFile::Permissions(0x077), QFile::Permissions());
    }

    void aKilledProcessHoldsNothing()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("lock");
        QProcess other;
        other.start("flock", {"--no-fork", path, "cat"});
        QVERIFY(other.waitForStarted(HangMs));
        other.write("it runs\n");
        QVERIFY(other.waitForReadyRead(HangMs));
        FileLock lock;
        QCOMPARE(lock.take(path), Result::HeldByAnother);
        other.kill();
        QVERIFY(other.waitForFinished(HangMs));
        QVERIFY(QFileInfo::exists(path));
        QCOMPARE(lock.take(path), Result::Taken);
    }

    void isImpossibleWhereNoFileCanBe_data()
    {
        const Rows<QString> row("name");
        row("no such folder", "missing/lock");
        row("a folder", "folder");
        row("a link to a file", "link");
        row("a dangling link", "dangling");
    }

    void isImpossibleWhereNoFileCanBe()
    {
        QFETCH(QString, name);
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir("folder"));
        writeFile(folder.filePath("file"), {});
        QVERIFY(QFile::link(folder.filePath("file"), folder.filePath("link")));
        QVERIFY(QFile::link(folder.filePath("elsewhere"), folder.filePath("dangling")));
        FileLock lock;
        QCOMPARE(lock.take(folder.filePath(name)), Result::Impossible);
        QVERIFY(!QFileInfo::exists(folder.filePath("elsewhere")));
    }
};

QTEST_GUILESS_MAIN(FileLockTest)
#include "tst_FileLock.moc"
