#include "platform/FileStamp.h"
#include "shared/ReplaceFile.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"

class ReplaceFileTest : public QObject
{
    Q_OBJECT
private slots:
    void putsNewBytesInThePlaceOfTheOld()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("a");
        writeFile(path, "old and longer");
        const quint64 before = fileStamp(path).inode;
        QVERIFY(replaceFile(path, QByteArrayLiteral("new\r\n\0bytes")));
        QCOMPARE(contentOf(path), QByteArrayLiteral("new\r\n\0bytes"));
        // Another file took the name: the old one was never open for writing.
        QVERIFY(fileStamp(path).inode != before);
        QVERIFY(replaceFile(path, {}));
        QCOMPARE(contentOf(path), QByteArray());
        const QByteArray large(3'000'000, 'x');
        QVERIFY(replaceFile(path, large));
        QCOMPARE(contentOf(path), large);
        QCOMPARE(namesIn(folder.path()), QStringList("a"));
    }

    void createsAMissingFileButNoFolder()
    {
        QTemporaryDir folder;
        QVERIFY(replaceFile(folder.filePath("new"), "text"));
        QCOMPARE(contentOf(folder.filePath("new")), QByteArray("text"));
        QVERIFY(!replaceFile(folder.filePath("none/new"), "text"));
        QVERIFY(!replaceFile({}, "text"));
        QCOMPARE(namesIn(folder.path()), QStringList("new"));
    }

    void keepsTheRightsOfTheOldFile()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("a");
        writeFile(path, "old");
        const auto rights = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        QVERIFY(QFile::setPermissions(path, rights));
        const auto before = QFile::permissions(path);
        QVERIFY(replaceFile(path, "new"));
        QCOMPARE(QFile::permissions(path), before);
    }

    void aLinkStaysAndItsTargetIsReplaced()
    {
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir("other"));
        const QString target = folder.filePath("other/target");
        const QString link = folder.filePath("link");
        writeFile(target, "old");
        QVERIFY(QFile::link("other/target", link));
        QVERIFY(replaceFile(link, "new"));
        QVERIFY(QFileInfo(link).isSymLink());
        QVERIFY(!QFileInfo(target).isSymLink());
        QCOMPARE(contentOf(target), QByteArray("new"));
        QCOMPARE(namesIn(folder.filePath("other")), QStringList("target"));
        // A link to nothing: its target is created.
        QVERIFY(QFile::remove(target));
        QVERIFY(replaceFile(link, "again"));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(contentOf(target), QByteArray("again"));
    }

    void whatIsNoOrdinaryFileIsRefused()
    {
        QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir("folder"));
        QVERIFY(!replaceFile(folder.filePath("folder"), "text"));
        QVERIFY(QFileInfo(folder.filePath("folder")).isDir());
        const QString pipe = folder.filePath("pipe");
        QCOMPARE(QProcess::execute("mkfifo", {pipe}), 0);
        QVERIFY(!replaceFile(pipe, "text"));
        QVERIFY(!QFileInfo(pipe).isFile());
        QCOMPARE(namesIn(folder.path()), QStringList({"folder", "pipe"}));
    }

    void aFullDiskKeepsTheOldFile_data()
    {
        const Rows<int, int> row("freeKilobytes", "newBytes");
        row("nothing free, small file", 0, 3'100);
        row("nothing free, large file", 0, 300'000);
        row("160 kB free, 300 kB to write", 160, 300'000);
        row("one page short", 160, 160 * 1024 + 1);
    }

    void aFullDiskKeepsTheOldFile()
    {
        if (ranWithOwnMounts())
            return;
        QFETCH(int, freeKilobytes);
        QFETCH(int, newBytes);
        QTemporaryDir folder;
        QCOMPARE(mountSmallDisk(folder.path(), 512), "mounted");

        const QString path = folder.filePath("pref.ini");
        const QByteArray old(3'000, 'o');
        writeFile(path, old);
        {
            QFile filler(folder.filePath("filler"));
            QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
            const QByteArray page(4096, 'f');
            while (filler.write(page) == page.size()) {
            }
            QVERIFY(filler.resize(filler.size() - freeKilobytes * 1024));
        }
        const QByteArray wanted(newBytes, 'n');
        QVERIFY(!replaceFile(path, wanted));
        QCOMPARE(contentOf(path), old);
        QCOMPARE(namesIn(folder.path()), QStringList({"filler", "pref.ini"}));

        // With room for it the same call succeeds.
        QVERIFY(QFile::remove(folder.filePath("filler")));
        QVERIFY(replaceFile(path, wanted));
        QCOMPARE(contentOf(path), wanted);
    }

    void aFolderThatCannotBeWrittenKeepsTheOldFile()
    {
        if (ranAsOrdinaryUser())
            return;
        QTemporaryDir folder;
        const QString path = folder.filePath("a");
        writeFile(path, "old");
        QVERIFY(QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner));
        // The file alone could be written, but not without cutting it first.
        QVERIFY(!replaceFile(path, "new"));
        QCOMPARE(contentOf(path), QByteArray("old"));
        QVERIFY(!replaceFile(folder.filePath("b"), "new"));
        QCOMPARE(namesIn(folder.path()), QStringList("a"));
        QVERIFY(QFile::setPermissions(folder.path(),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(replaceFile(path, "new"));
    }

    void aFileThatMustNotBeWrittenIsKept()
    {
        if (ranAsOrdinaryUser())
            return;
        QTemporaryDir folder;
        const QString path = folder.filePath("a");
        writeFile(path, "old");
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
        QVERIFY(!replaceFile(path, "new"));
        QCOMPARE(contentOf(path), QByteArray("old"));
    }
};

QTEST_GUILESS_MAIN(ReplaceFileTest)
#include "tst_ReplaceFile.moc"
