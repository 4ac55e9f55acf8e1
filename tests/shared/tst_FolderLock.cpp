#include "shared/FolderLock.h"
#include "support/ScratchFile.h"
#include "support/Waiting.h"

#include <QProcess>

#include <memory>

class FolderLockTest : public QObject
{
    Q_OBJECT
private slots:
    void oneProcessHoldsIt()
    {
        const QTemporaryDir folder;
        FileLock another; // as another process has it
        {
            const FolderLock mine(folder.path());
            QVERIFY(mine.isHeld());
            QCOMPARE(another.takeFolder(folder.path()), FileLock::Result::HeldByAnother);
            const QTemporaryDir other;
            QVERIFY(FolderLock(other.path()).isHeld());
        }
        QCOMPARE(another.takeFolder(folder.path()), FileLock::Result::Taken);
        QVERIFY(!FolderLock(folder.path(), 0).isHeld());
        another.release();
        QVERIFY(FolderLock(folder.path(), 0).isHeld());
        QCOMPARE(namesIn(folder.path()), QStringList());
    }

    /// Within one that is held, and by another way to the folder.
    void oneInTheOtherIsHeldWithIt()
    {
        const QTemporaryDir folder;
        QVERIFY(QFile::link(folder.path(), folder.filePath("way")));
        FileLock another;
        {
            const FolderLock outer(folder.path(), 0);
            QVERIFY(FolderLock(folder.filePath("way"), 0).isHeld());
            QVERIFY(FolderLock(folder.path() + "/", 0).isHeld());
            QCOMPARE(another.takeFolder(folder.path()), FileLock::Result::HeldByAnother);
        }
        QCOMPARE(another.takeFolder(folder.path()), FileLock::Result::Taken);
        // One that was not held counts for nothing.
        QVERIFY(!FolderLock(folder.path(), 0).isHeld());
        QVERIFY(!FolderLock(folder.path(), 0).isHeld());
    }

    void oneThatHoldsIsWaitedFor()
    {
        const QTemporaryDir folder;
        QProcess other;
        other.start("flock", {folder.path(), "sh", "-c", "echo; read x; touch \"$0\"/written",
                              folder.path()});
        QVERIFY(other.waitForReadyRead(HangMs));
        QVERIFY(!FolderLock(folder.path(), 10).isHeld()); // and no longer than asked for
        // From here on it ends while it is waited for.
        other.write("\n");
        QVERIFY(other.waitForBytesWritten(HangMs));
        const FolderLock mine(folder.path(), HangMs);
        QVERIFY(mine.isHeld());
        QVERIFY(QFile::exists(folder.filePath("written")));
        QVERIFY(other.waitForFinished(HangMs));
    }

    void aKilledProcessHoldsNothing()
    {
        const QTemporaryDir folder;
        QProcess other;
        other.start("flock", {"--no-fork", folder.path(), "sh", "-c", "echo; read x"});
        QVERIFY(other.waitForReadyRead(HangMs));
        other.kill();
        QVERIFY(other.waitForFinished(HangMs));
        QVERIFY(FolderLock(folder.path(), 0).isHeld());
    }

    void withoutAFolderThereIsNone()
    {
        const QTemporaryDir folder;
        writeFile(folder.filePath("file"), {});
        QVERIFY(!FolderLock(folder.filePath("none")).isHeld());
        QVERIFY(!FolderLock(folder.filePath("file")).isHeld());
        QCOMPARE(namesIn(folder.path()), QStringList("file"));
    }
};

QTEST_GUILESS_MAIN(FolderLockTest)
#include "tst_FolderLock.moc"
