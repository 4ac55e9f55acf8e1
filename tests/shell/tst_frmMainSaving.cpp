// What the main window says of a file that was saved, under which name it is offered, and what
// waits while it is asked for.

#include "camlist/CamList.h"
#include "instance/FileInbox.h"
#include "picture/Still.h"
#include "support/Browser.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "support/Waiting.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"
#include "widgets/Notice.h"

#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

namespace {

/// The main window with one camera in its list, "Clock", whose picture is on show.
struct Watching
{
    Watching()
    {
        server.listen();
        server.play(pictureAnswer(encodedPicture({40, 30}, Qt::red)));
        main.write("list.dat", "Demo\xFF"
                               "Clock\xFF" +
                                   server.url().toLatin1() + "\r\n");
        main.shown();
        QSignalSpy done(&cam(), &WebCam::Done);
        emit main.part<CamList>("cList").Click("Clock", server.url());
        QVERIFY(waitForSignal(done));
    }
    WebCam& cam() { return main.part<WebCam>("Cam"); }
    QString sentence() { return cam().notice().sentence(); }
    QString caption() { return main.part<QLabel>("lblPic").text(); }
    void save(int item)
    {
        const auto* face = main.part<ToolBar>("tbMain").button(ToolBar::Save);
        face->findChild<QMenu*>()->actions()[item - 1]->trigger();
    }
    /// The name that a save dialog offers, which is cancelled.
    QString offered()
    {
        save(1);
        auto* dialog = openDialog<QFileDialog>();
        const QString name = dialog->findChild<QLineEdit*>("fileNameEdit")->text();
        dialog->reject();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return name;
    }

    ScriptedServer server;
    ShownMain main;
};

} // namespace

class frmMainSavingTest : public QObject
{
    Q_OBJECT
private:
    static void kinds()
    {
        const Rows<int, QString> row("item", "file"); // of the toolbar's menu
        row("an image", 1, "a b.jpg");
        row("a movie", 2, "a b.pvm");
    }

private slots:
    void whatIsSavedIsToldAndItsFolderOpened_data() { kinds(); }

    void whatIsSavedIsToldAndItsFolderOpened()
    {
        QFETCH(int, item);
        QFETCH(QString, file);
        const Browser browser({"file"});
        const QTemporaryDir folder;
        Watching w;
        w.save(item);
        acceptFile(folder.filePath("a b"));
        QTRY_COMPARE(w.sentence(), "Saved \"" + file + "\".");
        QVERIFY(QFileInfo(folder.filePath(file)).size() > 0);
        auto* button = w.cam().notice().findChild<QPushButton*>();
        QCOMPARE(button->text(), "Open Folder");
        button->click();
        QCOMPARE(browser.opened, QList{QUrl::fromLocalFile(folder.path())});
    }

    void aRefusedSaveIsToldWithItsReason_data() { kinds(); }

    void aRefusedSaveIsToldWithItsReason()
    {
        if (ranAsOrdinaryUser())
            return;
        QFETCH(int, item);
        QFETCH(QString, file);
        const QTemporaryDir folder;
        QVERIFY(QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner));
        Watching w;
        w.save(item);
        acceptFile(folder.filePath("a b"));
        QTRY_COMPARE(w.sentence(), "\"" + file + "\" was not saved: Permission denied.");
        QCOMPARE(w.main.part<QLabel>("lbl").text(), "  Error: Not saved.");
    }

    void aFullDiskIsToldAsTheReason_data() { kinds(); }

    void aFullDiskIsToldAsTheReason()
    {
        if (ranWithOwnMounts())
            return;
        QFETCH(int, item);
        QFETCH(QString, file);
        const QTemporaryDir folder;
        QCOMPARE(mountSmallDisk(folder.path(), 4), "mounted");
        writeFile(folder.filePath("full"), "x");
        Watching w;
        w.save(item);
        acceptFile(folder.filePath("a b"));
        QTRY_COMPARE(w.sentence(), "\"" + file + "\" was not saved: No space left on device.");
    }

    void aFileBearsTheListsNameOfTheCamera()
    {
        Watching w;
        QVERIFY(w.offered().startsWith("Clock 2"));
        auto& list = w.main.part<CamList>("cList");
        list.select(w.server.url());
        list.Remove();
        QVERIFY(!list.has(w.server.url()));
        QVERIFY(w.offered().startsWith("127.0.0.1 2"));
    }

    void aHandOverWaitsWhileAFileIsAskedFor()
    {
        Watching w;
        w.main.write("m.pvm", plainMovie(3));
        w.save(1);
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        FileInbox& inbox = w.main.made().inbox();
        QSignalSpy waits(&inbox, &FileInbox::FileWaits);
        QVERIFY(inbox.receive(w.main.path("m.pvm")));
        QVERIFY(!waits.isEmpty() || waitForSignal(waits));
        QVERIFY(!w.cam().findChild<QObject*>("tmrMovie"));
        QCOMPARE(w.caption(), "Image 1");
        // Loaded, the movie is on show; the file is what was on show at the click.
        acceptFile(w.main.path("a.bmp"));
        QTRY_VERIFY(w.cam().findChild<QObject*>("tmrMovie"));
        QTRY_VERIFY(!w.cam().isBusy());
        QCOMPARE(Still::fromBytes(contentOf(w.main.path("a.bmp"))).size(), QSize(40, 30));
    }
};

QTEST_MAIN(frmMainSavingTest)
#include "tst_frmMainSaving.moc"
