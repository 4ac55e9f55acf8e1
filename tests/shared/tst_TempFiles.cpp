#include "shared/TempFiles.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <QProcess>

#include <sys/stat.h>
#include <unistd.h>

class TempFilesTest : public QObject
{
    Q_OBJECT
private slots:
    void deletesItsOwnFilesInAnyCaseAndNoOthers()
    {
        QTemporaryDir folder;
        const QStringList own = {"pvm.bmp", "tt.jpg", "tt.JPG", "tt.gif", "TT.Bmp"};
        const QStringList others = {"pvm.jpg", "list.dat", "pref.ini", "tt.png", "att.jpg"};
        for (const auto& name : own + others)
            writeFile(folder.filePath(name), {});
        tempFiles::removeAll(folder.path());
        QStringList left = QDir(folder.path()).entryList(QDir::Files);
        left.sort();
        QStringList expected = others;
        expected.sort();
        QCOMPARE(left, expected);
    }

    void theirNamesAreTheFoldersOwn()
    {
        QCOMPARE(tempFiles::ofFetch("/a", "GIF"), "/a/tt.GIF");
        QCOMPARE(tempFiles::ofLoading("/a"), "/a/tt.jpg");
        QCOMPARE(tempFiles::ofSaving("/a/"), "/a/pvm.jpg");
    }

    void anOldLinkIsReplacedNotWrittenThrough()
    {
        const QTemporaryDir folder;
        const auto path = [&](const char* name) { return folder.filePath(name); };
        QFile precious(path("precious"));
        QVERIFY(precious.open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(path("precious"), path("tt.jpg")));
        QFile file;
        tempFiles::openAnew(file, path("tt.jpg"));
        QCOMPARE(file.write("new"), 3);
        file.close();
        QVERIFY(!QFileInfo(path("tt.jpg")).isSymLink());
        QCOMPARE(QFileInfo(path("tt.jpg")).size(), 3);
        QCOMPARE(QFileInfo(path("precious")).size(), 0);
    }

    void nothingIsWrittenThroughALink_data()
    {
        const Rows<bool> row("isSymbolic");
        row("symbolic link", true);
        row("hard link", false);
    }

    void nothingIsWrittenThroughALink()
    {
        QFETCH(bool, isSymbolic);
        const QTemporaryDir folder;
        const QString precious = folder.filePath("precious");
        const QString path = folder.filePath("pvm.jpg");
        writeFile(precious, "old");
        if (isSymbolic)
            QVERIFY(QFile::link(precious, path));
        else
            QCOMPARE(::link(QFile::encodeName(precious), QFile::encodeName(path)), 0);
        tempFiles::write(path, "new bytes", tempFiles::OldEnd::Cut);
        QCOMPARE(contentOf(precious), QByteArray("old"));
        // A link to nothing makes nothing.
        QVERIFY(QFile::remove(precious) && QFile::remove(path) && QFile::link(precious, path));
        tempFiles::write(path, "new bytes", tempFiles::OldEnd::Cut);
        QVERIFY(!QFileInfo::exists(precious));
    }

    void whatIsNoFileIsLeftAlone()
    {
        const QTemporaryDir folder;
        const QString pipe = folder.filePath("pipe");
        QCOMPARE(QProcess::execute("mkfifo", {pipe}), 0);
        tempFiles::write(pipe, "bytes", tempFiles::OldEnd::Cut);
        tempFiles::write(folder.path(), "bytes", tempFiles::OldEnd::Cut);
        QVERIFY(!QFileInfo(pipe).isFile());
        QCOMPARE(namesIn(folder.path()), QStringList("pipe"));
    }

    void theyAreTheUsersAlone()
    {
        const QTemporaryDir folder;
        const mode_t before = ::umask(0);
        QFile file;
        tempFiles::openAnew(file, folder.filePath("tt.jpg"));
        tempFiles::write(folder.filePath("pvm.jpg"), "bytes", tempFiles::OldEnd::Cut);
        ::umask(before);
        for (const char* name : {"tt.jpg", "pvm.jpg"}) {
            struct stat info = {};
            QCOMPARE(::stat(QFile::encodeName(folder.filePath(name)), &info), 0);
            QCOMPARE(int(info.st_mode & ALLPERMS), 0600);
        }
    }

    void anOldFileIsOverwrittenFromItsBeginning_data()
    {
        const Rows<bool, QByteArray> row("isCut", "content");
        row("cut", true, "new");
        row("its end stays", false, "new and longer");
    }

    void anOldFileIsOverwrittenFromItsBeginning()
    {
        QFETCH(bool, isCut);
        const QTemporaryDir folder;
        const QString path = folder.filePath("pvm.jpg");
        writeFile(path, "old and longer");
        tempFiles::write(path, "new", isCut ? tempFiles::OldEnd::Cut : tempFiles::OldEnd::Stays);
        QTEST(contentOf(path), "content");
    }

    void aMissingFolderIsNoError()
    {
        QTemporaryDir folder;
        tempFiles::removeAll(folder.filePath("nowhere"));
        QVERIFY(!QFileInfo::exists(folder.filePath("nowhere")));
    }
};

QTEST_GUILESS_MAIN(TempFilesTest)
#include "tst_TempFiles.moc"
