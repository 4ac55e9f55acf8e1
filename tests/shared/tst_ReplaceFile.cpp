#include "platform/files/FileStamp.h"
#include "shared/ReplaceFile.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"

#include <QTemporaryFile>

#include <memory>

#include <sys/stat.h>
#include <unistd.h>

Q_DECLARE_METATYPE(NewFile)

class ReplaceFileTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void putsNewBytesInThePlaceOfTheOld()
    {
        const QString path = at("a");
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
        QCOMPARE(namesIn(m_folder->path()), QStringList("a"));
    }

    void createsAMissingFileButNoFolder()
    {
        QVERIFY(replaceFile(at("new"), "text"));
        QCOMPARE(contentOf(at("new")), QByteArray("text"));
        QString reason;
        QVERIFY(!replaceFile(at("none/new"), "text", &reason));
        QCOMPARE(reason, "No such file or directory");
        reason.clear();
        QVERIFY(!replaceFile({}, "text", &reason));
        QVERIFY(!reason.isEmpty());
        QCOMPARE(namesIn(m_folder->path()), QStringList("new"));
    }

    void keepsTheRightsOfTheOldFile()
    {
        const QString path = at("a");
        writeFile(path, "old");
        const auto rights = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
        QVERIFY(QFile::setPermissions(path, rights));
        const auto before = QFile::permissions(path);
        QVERIFY(replaceFile(path, "new"));
        QCOMPARE(QFile::permissions(path), before);
    }

    void whatAKilledWriterLeftIsRemoved()
    {
        // Of its pattern, which these are: as QSaveFile names them, in a process that is killed.
        for (const char* name : {"a.dat.aBcDeF", "a.dat.XYZabc", "a.dat.zzzzzZ"})
            writeFile(at(name), "half");
        const QStringList others{"a.dat",        "a.dat.Backup",  "a.dat.backup", "a.dat.BACKUP",
                                 "a.dat.aBcDe",  "a.dat.aBcDeFg", "a.dat.aBcDe1", "a.dat.aBcD.f",
                                 "b.dat.aBcDeF", "a.datxaBcDeF",  "xa.dat.aBcDeF"};
        for (const QString& name : others)
            writeFile(at(qPrintable(name)), "mine");
        QVERIFY(QFile::link(at("a.dat"), at("a.dat.liNkto")));
        QVERIFY(QDir(m_folder->path()).mkdir("a.dat.foLder"));
        writeFile(at("a.dat.hardLi"), "two names");
        QVERIFY(QProcess::execute("ln", {at("a.dat.hardLi"), at("c")}) == 0);
        removeLeftovers(at("a.dat"));
        QStringList expected =
            others + QStringList{"a.dat.liNkto", "a.dat.foLder", "a.dat.hardLi", "c"};
        QStringList found = namesIn(m_folder->path());
        expected.sort();
        found.sort();
        QCOMPARE(found, expected);
        removeLeftovers(at("none/a.dat"));
    }

    /// Nearly all: some of the names that Qt makes up read as words.
    void whatQtsWriterLeavesIsRemoved()
    {
        for (int i = 0; i < 40; ++i) {
            QTemporaryFile file(at("a.dat.XXXXXX"));
            file.setAutoRemove(false);
            QVERIFY(file.open() && file.fileName().startsWith(at("a.dat.")));
        }
        QCOMPARE(namesIn(m_folder->path()).size(), 40);
        removeLeftovers(at("a.dat"));
        QVERIFY(namesIn(m_folder->path()).size() < 15);
    }

    void whatIsAnothersStays()
    {
        if (geteuid() != 0)
            QSKIP("only root has files of others");
        writeFile(at("a.dat.aBcDeF"), "theirs");
        QCOMPARE(chown(qPrintable(at("a.dat.aBcDeF")), 65534, 65534), 0);
        removeLeftovers(at("a.dat"));
        QVERIFY(QFile::exists(at("a.dat.aBcDeF")));
    }

    void aLinkStaysAndItsTargetIsReplaced()
    {
        QVERIFY(QDir(m_folder->path()).mkdir("other"));
        const QString target = at("other/target");
        const QString link = at("link");
        writeFile(target, "old");
        QVERIFY(QFile::link("other/target", link));
        QVERIFY(replaceFile(link, "new"));
        QVERIFY(QFileInfo(link).isSymLink());
        QVERIFY(!QFileInfo(target).isSymLink());
        QCOMPARE(contentOf(target), QByteArray("new"));
        QCOMPARE(namesIn(at("other")), QStringList("target"));
        // A link to nothing: its target is created.
        QVERIFY(QFile::remove(target));
        QVERIFY(replaceFile(link, "again"));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(contentOf(target), QByteArray("again"));
    }

    void aNewFileIsTheUsersAlone_data()
    {
        const Rows<NewFile, int> row("newFile", "mode");
        row("of the program", NewFile::Private, 0600);
        row("a document", NewFile::Document, 0640);
    }

    void aNewFileIsTheUsersAlone()
    {
        QFETCH(NewFile, newFile);
        const mode_t before = ::umask(027);
        const bool replaced = replaceFile(at("new"), "text", nullptr, newFile);
        // The umask itself is as it was: what the user's browser makes is its own business.
        const mode_t after = ::umask(before);
        QVERIFY(replaced);
        QCOMPARE(int(after), 027);
        struct stat info = {};
        QCOMPARE(::stat(QFile::encodeName(at("new")), &info), 0);
        QTEST(int(info.st_mode & ALLPERMS), "mode");
    }

    void aLinkOfAnotherUserIsRefused_data()
    {
        const Rows<bool> row("isFolder");
        row("the link is another user's", false);
        row("its folder is", true);
    }

    void aLinkOfAnotherUserIsRefused()
    {
        QFETCH(bool, isFolder);
        constexpr uid_t Nobody = 65534;
        QVERIFY(QDir(m_folder->path()).mkdir("theirs"));
        const QString link = at("theirs/list.dat");
        writeFile(at("precious"), "old");
        QVERIFY(QFile::link(at("precious"), link));
        const QByteArray given = QFile::encodeName(isFolder ? at("theirs") : link);
        if (::lchown(given, Nobody, Nobody) != 0)
            QSKIP("Only root can give a link away.");
        QString reason;
        QVERIFY(!replaceFile(link, "new", &reason));
        QCOMPARE(reason, "Is a link of another user");
        QCOMPARE(contentOf(at("precious")), QByteArray("old"));
        QVERIFY(QFileInfo(link).isSymLink());
    }

    void whatIsNoOrdinaryFileIsRefused()
    {
        QVERIFY(QDir(m_folder->path()).mkdir("folder"));
        QString reason;
        QVERIFY(!replaceFile(at("folder"), "text", &reason));
        QCOMPARE(reason, "Is a directory");
        QVERIFY(QFileInfo(at("folder")).isDir());
        const QString pipe = at("pipe");
        QCOMPARE(QProcess::execute("mkfifo", {pipe}), 0);
        QVERIFY(!replaceFile(pipe, "text", &reason));
        QCOMPARE(reason, "Is no ordinary file");
        QVERIFY(!QFileInfo(pipe).isFile());
        QCOMPARE(namesIn(m_folder->path()), QStringList({"folder", "pipe"}));
    }

    void aFullDiskKeepsTheOldFile_data()
    {
        const Rows<int, int> row("freeKilobytes", "newBytes");
        row("nothing free, small file", 0, 3'100);
        row("nothing free, large file", 0, 300'000);
        row("4 kB free, 12 kB to write", 4, 12'000);
        row("160 kB free, 300 kB to write", 160, 300'000);
        row("one page short", 160, 160 * 1024 + 1);
    }

    void aFullDiskKeepsTheOldFile()
    {
        if (ranWithOwnMounts())
            return;
        QFETCH(int, freeKilobytes);
        QFETCH(int, newBytes);
        QCOMPARE(mountSmallDisk(m_folder->path(), 512), "mounted");

        const QString path = at("pref.ini");
        const QByteArray old(3'000, 'o');
        writeFile(path, old);
        {
            QFile filler(at("filler"));
            QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
            const QByteArray page(4096, 'f');
            while (filler.write(page) == page.size()) {
            }
            QVERIFY(filler.resize(filler.size() - freeKilobytes * 1024));
        }
        const QByteArray wanted(newBytes, 'n');
        QString reason;
        QVERIFY(!replaceFile(path, wanted, &reason));
        QCOMPARE(reason, "No space left on device");
        QCOMPARE(contentOf(path), old);
        QCOMPARE(namesIn(m_folder->path()), QStringList({"filler", "pref.ini"}));

        // With room for it the same call succeeds.
        QVERIFY(QFile::remove(at("filler")));
        QVERIFY(replaceFile(path, wanted, &reason));
        QCOMPARE(reason, "");
        QCOMPARE(contentOf(path), wanted);
    }

    void aFolderThatCannotBeWrittenKeepsTheOldFile()
    {
        if (ranAsOrdinaryUser())
            return;
        const QString path = at("a");
        writeFile(path, "old");
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
        // The file alone could be written, but not without cutting it first.
        for (const QString& name : {path, at("b")}) {
            QString reason;
            QVERIFY(!replaceFile(name, "new", &reason));
            QCOMPARE(reason, "Permission denied");
        }
        QCOMPARE(contentOf(path), QByteArray("old"));
        QCOMPARE(namesIn(m_folder->path()), QStringList("a"));
        QVERIFY(QFile::setPermissions(m_folder->path(),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(replaceFile(path, "new"));
    }

    void aFileThatMustNotBeWrittenIsKept()
    {
        if (ranAsOrdinaryUser())
            return;
        const QString path = at("a");
        writeFile(path, "old");
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
        QString reason;
        QVERIFY(!replaceFile(path, "new", &reason));
        QCOMPARE(reason, "Permission denied");
        QCOMPARE(contentOf(path), QByteArray("old"));
    }

private:
    QString at(const QString& name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(ReplaceFileTest)
#include "tst_ReplaceFile.moc"
