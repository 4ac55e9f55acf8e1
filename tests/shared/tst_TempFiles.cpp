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
        removeTempFiles(folder.path());
        QStringList left = QDir(folder.path()).entryList(QDir::Files);
        left.sort();
        QStringList expected = others;
        expected.sort();
        QCOMPARE(left, expected);
    }

    void aMissingFolderIsNoError()
    {
        QTemporaryDir folder;
        removeTempFiles(folder.filePath("nowhere"));
        QVERIFY(!QFileInfo::exists(folder.filePath("nowhere")));
    }
};

QTEST_GUILESS_MAIN(TempFilesTest)
#include "tst_TempFiles.moc"
