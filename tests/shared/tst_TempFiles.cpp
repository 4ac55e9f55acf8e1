#include "shared/TempFiles.h"
#include "support/ScratchFile.h"

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

    void aMissingFolderIsNoError()
    {
        QTemporaryDir folder;
        tempFiles::removeAll(folder.filePath("nowhere"));
        QVERIFY(!QFileInfo::exists(folder.filePath("nowhere")));
    }
};

QTEST_GUILESS_MAIN(TempFilesTest)
#include "tst_TempFiles.moc"
