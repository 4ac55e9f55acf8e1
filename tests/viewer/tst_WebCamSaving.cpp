// Images and movies saved by the toolbar: what is said of it, and what comes in between.

#include "support/Dialogs.h"
#include "support/FileScene.h"
#include "support/Rows.h"
#include "viewer/movie/frmMovie.h"

#include <QFileDialog>
#include <QSignalSpy>

namespace {

const QString NotSaved = "  Error: Not saved.";

/// Saves an image into a folder that is not there.
void failToSave(Files& f)
{
    f.press(ToolBar::Save);
    f.answer(f.path("missing folder/m.jpg"));
}

/// The name that a save dialog offers, which is cancelled.
QString offered(Files& f, int item)
{
    f.chooseFromMenu(ToolBar::Save, item);
    auto* dialog = openDialog<QFileDialog>();
    const QString name = dialog->findChild<QLineEdit*>("fileNameEdit")->text();
    dialog->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return name;
}

} // namespace

class WebCamSavingTest : public QObject
{
    Q_OBJECT
private slots:
    void whatIsSavedIsTold()
    {
        Files f;
        f.openImage(numbered(1));
        QSignalSpy saved(&f.cam, &WebCam::Saved);
        f.press(ToolBar::Save);
        f.answer(f.path("b"));
        QCOMPARE(saved.size(), 1);
        QCOMPARE(saved[0], QVariantList({f.path("b.jpg")}));
        f.saveMovie("c");
        QTRY_COMPARE(saved.size(), 2);
        QCOMPARE(saved[1], QVariantList{f.path("c.pvm")});
        QCOMPARE(f.status(), "");
    }

    void aFailedSaveSaysSo_data()
    {
        const Rows<int> row("item"); // of the toolbar's menu
        row("an image", 1);
        row("a movie", 2);
    }

    void aFailedSaveSaysSo()
    {
        QFETCH(int, item);
        Files f;
        QSignalSpy notSaved(&f.cam, &WebCam::NotSaved);
        f.openImage(numbered(1));
        f.hideStatus();
        f.chooseFromMenu(ToolBar::Save, item);
        f.answer(f.path("missing folder/m.jpg"));
        QTRY_COMPARE(f.status(), "  Error: Not saved.");
        QVERIFY(f.statusIsShown());
        QCOMPARE(notSaved.size(), 1);
        QCOMPARE(notSaved[0][1].toString(), "No such file or directory");
        QTRY_VERIFY(!f.isWorking());
        QVERIFY(f.cam.findChildren<QMessageBox*>().isEmpty());
    }

    void imagesFetchedDuringASaveAreSavedToo()
    {
        Files f;
        f.loadMovie(20);
        f.saveSlowly("n.pvm", 5);
        f.fetchPicture(21);
        QCOMPARE(f.caption(), "Image 21");
        f.timer("tmrMovie").setInterval(0);
        QTRY_VERIFY(!f.isWorking());
        QList<int> all;
        for (int number = 1; number <= 21; ++number)
            all << number;
        QCOMPARE(f.framesOf("n.pvm"), all);
    }

    void imagesThatGoDuringASaveCostNoOther()
    {
        Files f;
        f.loadMovie(6);
        f.saveSlowly("n.pvm", 3);
        // Entry 1, which is saved, goes; the others move up.
        f.press(ToolBar::Delete);
        f.timer("tmrMovie").setInterval(0);
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.framesOf("n.pvm"), (QList<int>{1, 2, 3, 4, 5, 6}));
    }

    void imagesDrivenOutDuringASaveCostNoOther()
    {
        Files f;
        f.loadMovie(45);
        f.saveSlowly("n.pvm", 10);
        QList<int> all;
        for (int number = 1; number <= 45; ++number)
            all << number;
        for (int number = 46; number <= 52; ++number) {
            f.openImage(numbered(number));
            QCOMPARE(f.caption(), "Image 45");
            all << number;
        }
        f.timer("tmrMovie").setInterval(0);
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.framesOf("n.pvm"), all);
    }

    void closingDuringASaveKeepsTheOldFile()
    {
        Files f;
        f.loadMovie(5);
        const QString old = f.write("old.pvm", "old");
        f.chooseFromMenu(ToolBar::Save, 2);
        f.answer(old);
        (void)answerMessage(QMessageBox::Yes); // to replace the file
        QTRY_VERIFY(f.isWorking());
        f.cam.shutDown();
        QVERIFY(!f.timer("tmrMovie").Enabled());
        QCOMPARE(f.read("old.pvm"), "old");
    }

    void closingTheProgressWindowSaysNotSaved()
    {
        Files f;
        f.loadMovie(5);
        QSignalSpy notSaved(&f.cam, &WebCam::NotSaved);
        f.saveSlowly("n.pvm", 2);
        f.cam.findChild<frmMovie*>()->close();
        QCOMPARE(notSaved.size(), 1);
        QCOMPARE(notSaved[0], QVariantList({f.path("n.pvm"), "Saving was stopped"}));
        QCOMPARE(f.status(), NotSaved);
        QVERIFY(f.statusIsShown());
        QTRY_VERIFY(!f.isWorking());
        QVERIFY(!QFileInfo::exists(f.path("n.pvm")));
    }

    void deleteAllDuringASaveSaysNotSaved()
    {
        Files f;
        f.loadMovie(5);
        QSignalSpy notSaved(&f.cam, &WebCam::NotSaved);
        f.saveSlowly("n.pvm", 2);
        f.chooseFromMenu(ToolBar::Delete, 2);
        f.openImage(numbered(6));
        f.timer("tmrMovie").setInterval(0);
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(notSaved.size(), 1);
        QCOMPARE(notSaved[0], QVariantList({f.path("n.pvm"), "All images were deleted"}));
        QCOMPARE(f.status(), NotSaved);
        QVERIFY(!QFileInfo::exists(f.path("n.pvm")));
    }

    void theFaultStaysForThreeSecondsWhateverFetchesSay()
    {
        Files f;
        f.fetchPicture(1);
        const QString fetched = f.status();
        QVERIFY(!fetched.isEmpty());
        f.hideStatus();
        QVERIFY(!f.statusIsShown());

        failToSave(f);
        QCOMPARE(f.timer("tmrFault").Interval(), 3'000);
        f.fetchPicture(2);
        QCOMPARE(f.status(), NotSaved);
        f.press(ToolBar::Stop);
        QCOMPARE(f.status(), NotSaved);
        f.hideStatus();
        QVERIFY(f.statusIsShown());

        f.timer("tmrFault").elapse();
        QVERIFY(!f.timer("tmrFault").Enabled());
        QCOMPARE(f.status(), "  Stopped");
        QVERIFY(!f.statusIsShown());
    }

    void whatWasSaidBeforeTheFaultComesBack()
    {
        Files f;
        f.fetchPicture(1);
        const QString fetched = f.status();
        failToSave(f);
        QCOMPARE(f.status(), NotSaved);
        f.timer("tmrFault").elapse();
        QCOMPARE(f.status(), fetched);
        QVERIFY(f.statusIsShown());
    }

    void theNextSuccessEndsTheFault_data()
    {
        const Rows<int> row("item"); // of the toolbar's menu
        row("an image", 1);
        row("a movie", 2);
    }

    void theNextSuccessEndsTheFault()
    {
        QFETCH(int, item);
        Files f;
        f.openImage(numbered(1));
        failToSave(f);
        // It does not go by itself meanwhile.
        f.timer("tmrFault").setInterval(600'000);
        f.chooseFromMenu(ToolBar::Save, item);
        f.answer(f.path("good"));
        QTRY_VERIFY(!f.cam.isBusy());
        QCOMPARE(f.status(), "");
        QVERIFY(!f.timer("tmrFault").Enabled());
    }

    void theNextFaultIsSeenInItsPlace()
    {
        Files f;
        f.openImage(numbered(1));
        failToSave(f);
        f.openImage("no picture", "bad.jpg");
        QCOMPARE(f.status(), "  Error: Not a picture.");
        QVERIFY(f.statusIsShown());
        failToSave(f);
        QCOMPARE(f.status(), NotSaved);
    }

    void theEndOfTheProgramStopsTheFault()
    {
        Files f;
        f.openImage(numbered(1));
        failToSave(f);
        QVERIFY(f.timer("tmrFault").Enabled());
        f.cam.shutDown();
        QVERIFY(!f.timer("tmrFault").Enabled());
    }

    void thePictureOfTheClickIsSavedThoughAnotherIsFetched()
    {
        Files f;
        f.fetchPicture(1);
        f.press(ToolBar::Save);
        f.fetchPicture(2);
        QCOMPARE(f.picture(), numbered(2));
        f.answer(f.path("a.bmp"));
        QCOMPARE(Still::fromBytes(f.read("a.bmp")).size(), QSize(9, 8));
    }

    void aFileIsNamedAfterTheCameraOnShow()
    {
        Files f;
        f.cam.setClock([] { return QDateTime(QDate(2026, 11, 21), QTime(18, 9, 5)); });
        f.fetchPicture(1);
        QCOMPARE(offered(f, 1), "127.0.0.1 2026-11-21 18-09-05.jpg");
        const QString key = f.server.url();
        f.cam.setCameraNames(
            [key](const QString& wanted) { return wanted == key ? "Clock" : QString(); });
        QCOMPARE(offered(f, 1), "Clock 2026-11-21 18-09-05.jpg");
        QCOMPARE(offered(f, 2), "Clock 2026-11-21 18-09-05.pvm");
        f.openImage(numbered(2));
        QCOMPARE(offered(f, 1), "Image 2026-11-21 18-09-05.jpg");
        f.press(ToolBar::Back);
        QCOMPARE(offered(f, 1), "Clock 2026-11-21 18-09-05.jpg");
    }

    void anOpenFileDialogCountsAsBusy_data()
    {
        const Rows<int, int> row("button", "item");
        row("open image", ToolBar::Open, 1);
        row("open movie", ToolBar::Open, 2);
        row("save image", ToolBar::Save, 1);
        row("save movie", ToolBar::Save, 2);
    }

    void anOpenFileDialogCountsAsBusy()
    {
        QFETCH(int, button);
        QFETCH(int, item);
        Files f;
        f.loadMovie(2);
        QTRY_VERIFY(!f.cam.isBusy());
        QSignalSpy idle(&f.cam, &WebCam::Idle);
        f.chooseFromMenu(button, item);
        QVERIFY(f.cam.isBusy());
        openDialog<QFileDialog>()->reject();
        QVERIFY(!f.cam.isBusy());
        QCOMPARE(idle.size(), 1);
        // Answered, it is busy with the movie until that is over.
        f.chooseFromMenu(button, item);
        f.answer(item == 2 ? f.path("m.pvm") : f.path("none.bmp"));
        if (button == ToolBar::Save && item == 2)
            (void)answerMessage(QMessageBox::Yes); // to replace the file
        QTRY_COMPARE(idle.size(), 2);
        QVERIFY(!f.cam.isBusy());
        QVERIFY(!f.isWorking());
    }

    void aDialogThatOutlivesAPlayIsBusy()
    {
        Files f;
        f.loadMovie(2);
        f.saveSlowly("n.pvm", 1);
        f.press(ToolBar::Open);
        QVERIFY(openDialog<QFileDialog>());
        QSignalSpy idle(&f.cam, &WebCam::Idle);
        f.timer("tmrMovie").setInterval(0);
        QTRY_VERIFY(!f.isWorking());
        QVERIFY(f.cam.isBusy());
        QCOMPARE(idle.size(), 0);
        openDialog<QFileDialog>()->reject();
        QCOMPARE(idle.size(), 1);
    }
};

QTEST_MAIN(WebCamSavingTest)
#include "tst_WebCamSaving.moc"
