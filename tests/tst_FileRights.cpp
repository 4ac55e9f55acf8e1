// Who may read the files that the program makes: those of its own are the user's alone, because
// addresses may hold passwords; what a person saves by a dialog is a document like any other's.

#include "camlist/CameraListFile.h"
#include "picture/SaveImage.h"
#include "settings/Ini.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "viewer/movie/MovieWriter.h"

#include <memory>

namespace {

const auto OwnersAlone = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;

Still picture()
{
    return Still::fromImage(plainImage({8, 8}, Qt::red));
}

} // namespace

class FileRightsTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void theProgramsOwnFilesAreTheUsersAlone()
    {
        QVERIFY(CameraListFile(m_folder->path()).write("c\xFFn\xFFk"));
        WriteToINI("VIEW", "LIST", "True", at("pref.ini"));
        QVERIFY(FlushINI());
        for (const char* name : {"list.dat", "pref.ini"})
            QCOMPARE(QFile::permissions(at(name)), OwnersAlone);
    }

    void documentsHaveTheRightsOfAnyOther()
    {
        QVERIFY(savePicture(at("a.jpg"), picture()));
        QVERIFY(savePicture(at("a.bmp"), picture()));
        QCOMPARE(writeExportedList(at("list.zip"), {{"c", "n", "k"}}), "");
        ImageList images;
        images.Add(picture());
        MovieWriter movie(at("a.pvm"), m_folder->path(), images);
        QSignalSpy ended(&movie, &Job::Finished);
        movie.begin();
        QVERIFY(!ended.isEmpty() || waitForSignal(ended));
        writeFile(at("another"), "text");
        for (const char* name : {"a.jpg", "a.bmp", "list.zip", "a.pvm"})
            QCOMPARE(QFile::permissions(at(name)), QFile::permissions(at("another")));
    }

private:
    QString at(const char* name) const { return m_folder->filePath(QString::fromLatin1(name)); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(FileRightsTest)
#include "tst_FileRights.moc"
