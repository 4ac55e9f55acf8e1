// Images and movies from and to files, by the toolbar's buttons, menus and dialogs.

#include "display/ImageView.h"
#include "display/ThumbView.h"
#include "support/Dialogs.h"
#include "support/FileScene.h"
#include "support/Rows.h"
#include "viewer/movie/frmMovie.h"
#include "viewer/surface/ToolBar.h"

class WebCamFilesTest : public QObject
{
    Q_OBJECT
private slots:
    void anOpenedImageJoinsTheHistorySilently()
    {
        Files f;
        f.fetchPicture(1);
        const auto told = f.told();
        f.openImage(numbered(2));
        QCOMPARE(f.picture(), numbered(2));
        QCOMPARE(f.caption(), "Image 2");
        QCOMPARE(f.told(), told);
        QCOMPARE(f.cam.Url(), f.server.url());
        // The strip learns of it when it is shown.
        auto& strip = f.part<ThumbView>("tvMain");
        QCOMPARE(strip.ThumbCount(), 1);
        f.press(ToolBar::ToggleView);
        QCOMPARE(strip.ThumbCount(), 2);

        f.press(ToolBar::ToggleView);
        f.chooseFromMenu(ToolBar::Open, 1);
        f.answer(f.write("b.gif", smallGif()));
        QCOMPARE(f.picture(), smallGif());
        QCOMPARE(f.caption(), "Image 3");
    }

    void anOpenedImageHasNoAddress()
    {
        Files f;
        f.cam.setUrl("cam/a.jpg");
        f.openImage(numbered(1));
        QCOMPARE(f.cam.Url(), "cam/a.jpg");
        f.press(ToolBar::Back);
        QCOMPARE(f.told(), (QStringList{"change http://"}));
        QCOMPARE(f.cam.Url(), "");
        QCOMPARE(f.caption(), "Image 1");
        // There is nothing to refresh now.
        f.press(ToolBar::Refresh);
        QCOMPARE(f.status(), "");
    }

    void the46thOpenedImageBecomesTheNewest45th()
    {
        Files f;
        for (int i = 0; i < 45; ++i)
            f.openImage(numbered(1));
        f.openImage(numbered(2), "b.jpg");
        QCOMPARE(f.caption(), "Image 45");
        QCOMPARE(f.picture(), numbered(2));
        f.press(ToolBar::ToggleView);
        QCOMPARE(f.part<ThumbView>("tvMain").ThumbCount(), 45);
    }

    void aFileThatIsNoPictureStopsThere()
    {
        Files f;
        f.openImage(numbered(1), "good.jpg");
        f.hideStatus();
        f.openImage("no picture", "bad.jpg");
        QCOMPARE(f.status(), "  Error: Not a picture.");
        QVERIFY(f.statusIsShown());
        QCOMPARE(f.picture(), numbered(1));
        QCOMPARE(f.caption(), "Image 1");
    }

    void theImageOnShowIsSaved()
    {
        Files f;
        f.openImage(numbered(1));
        f.press(ToolBar::Save);
        f.answer(f.path("b.bmp"));
        QVERIFY(f.read("b.bmp").startsWith("BM"));
        f.chooseFromMenu(ToolBar::Save, 1);
        f.answer(f.path("c.gif"));
        QVERIFY(f.read("c.gif").startsWith("GIF8"));
    }

    void aMovieReplacesTheHistory()
    {
        Files f;
        f.openImage(encodedPicture({3, 3}, Qt::red, "bmp"), "a.bmp");
        f.cam.setUrl("cam/a.jpg");
        f.openMovie(f.write("m.pvm", movieOf(3)));
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.caption(), "Image 1");
        QCOMPARE(f.picture(), numbered(1));
        QCOMPARE(f.told(), QStringList{});
        QCOMPARE(f.cam.Url(), "cam/a.jpg");
        f.press(ToolBar::Back);
        QCOMPARE(f.caption(), "Image 3");
        f.press(ToolBar::ToggleView);
        QCOMPARE(f.part<ThumbView>("tvMain").ThumbCount(), 3);
    }

    void openMovieLocksTheToolBarMeanwhile()
    {
        Files f;
        f.openMovie(f.write("m.pvm", movieOf(3)));
        QVERIFY(f.isWorking());
        QCOMPARE(f.enabledButtons(), QList<int>{});
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.enabledButtons(), AllButtons);
    }

    void aFileThatIsNoMovieUnlocksTheToolBar()
    {
        Files f;
        f.openMovie(f.write("m.pvm", movieOf(2) + "&IMAGE&no picture"));
        auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QCOMPARE(box->parentWidget(), &f.cam);
        // The progress window is out of its way.
        const auto* progress = f.cam.findChild<frmMovie*>();
        QVERIFY(!progress || !progress->isVisible());
        const ShownMessage message = answerMessage(QMessageBox::Ok);
        QCOMPARE(message.text, "Out of memory");
        QCOMPARE(message.title, "Error");
        QCOMPARE(message.icon, int(QMessageBox::Critical));
        QTRY_VERIFY(f.cam.findChildren<QMessageBox*>().isEmpty());
        QTRY_COMPARE(f.enabledButtons(), AllButtons);
        // What came before the fault is there, and nothing on show.
        QCOMPARE(f.caption(), "Image N/A");
        QVERIFY(f.part<ImageView>("imgMain").Picture().isNull());
        f.press(ToolBar::Forward);
        f.press(ToolBar::Forward);
        QCOMPARE(f.caption(), "Image 2");
    }

    void loadMovieLeavesTheButtonsAlone()
    {
        Files f;
        f.cam.LoadMovie(f.write("m.pvm", movieOf(2)));
        QVERIFY(f.isWorking());
        QCOMPARE(f.enabledButtons(), AllButtons);
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.caption(), "Image 1");
    }

    void framesOfAMovieHaveNoAddress()
    {
        Files f;
        f.cam.setUrl("cam/a.jpg");
        f.loadMovie(2);
        f.press(ToolBar::Forward);
        f.press(ToolBar::Delete);
        f.press(ToolBar::PlayMovie);
        f.press(ToolBar::StopMovie);
        QCOMPARE(f.told(), QStringList{});
        QCOMPARE(f.cam.Url(), "cam/a.jpg");
    }

    void aLongMovieStaysWholeAndEachNewImageCostsOne()
    {
        Files f;
        f.loadMovie(60);
        f.press(ToolBar::Back);
        QCOMPARE(f.caption(), "Image 60");
        f.fetchPicture(61);
        QCOMPARE(f.caption(), "Image 60");
        f.press(ToolBar::Forward);
        QCOMPARE(f.picture(), numbered(2));
    }

    void theHistoryIsSavedAndLoadedAgain()
    {
        Files f;
        for (int number = 1; number <= 3; ++number) {
            f.openImage(numbered(number));
        }
        f.saveMovie("m.pvm");
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.status(), "");
        f.chooseFromMenu(ToolBar::Delete, 2);
        f.openMovie(f.path("m.pvm"));
        QTRY_VERIFY(!f.isWorking());
        for (int number = 1; number <= 3; ++number) {
            QCOMPARE(f.caption(), QString("Image %1").arg(number));
            QCOMPARE(f.size(), QSize(8 + number, 8));
            f.press(ToolBar::Forward);
        }
        QCOMPARE(f.caption(), "Image 1");
    }

    void anEmptyHistorySavesAnEmptyFile()
    {
        Files f;
        f.saveMovie("m.pvm");
        QTRY_VERIFY(!f.isWorking());
        QVERIFY(QFileInfo::exists(f.path("m.pvm")));
        QCOMPARE(f.read("m.pvm"), QByteArray());
        f.openMovie(f.path("m.pvm"));
        QCOMPARE(answerMessage(QMessageBox::Ok).text, "Out of memory");
    }

    void playWaitsForASave()
    {
        Files f;
        f.loadMovie(5);
        f.press(ToolBar::Back);
        f.saveMovie("n.pvm");
        f.press(ToolBar::PlayMovie);
        QVERIFY(f.isWorking());
        QCOMPARE(f.enabledButtons(), QList<int>{ToolBar::StopMovie});
        QCOMPARE(f.caption(), "Image 5");
        QTRY_COMPARE(f.caption(), "Image 1");
        QTRY_VERIFY(!f.isWorking());
        QVERIFY(f.timer("tmrPlay").Enabled());
        QCOMPARE(f.read("n.pvm").count("&IMAGE&"), 4);
    }

    void twoMoviesInARowAreLoadedInTurn()
    {
        Files f;
        f.cam.LoadMovie(f.write("a.pvm", movieOf(5)));
        f.cam.LoadMovie(f.write("b.pvm", movieOf(2)));
        QTRY_VERIFY(!f.isWorking());
        f.press(ToolBar::Back);
        QCOMPARE(f.caption(), "Image 2");
    }

    void whatIsDeletedWhileAMovieLoadsStaysDeleted()
    {
        Files f;
        f.cam.LoadMovie(f.write("m.pvm", movieOf(2)));
        auto& steps = f.timer("tmrMovie");
        // Opened, scanned, both frames read; then "Done!".
        for (int i = 0; i < 4; ++i)
            steps.elapse();
        f.chooseFromMenu(ToolBar::Delete, 2);
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.caption(), "Image N/A");
        f.press(ToolBar::Forward);
        QCOMPARE(f.caption(), "Image N/A");
    }

    void imagesThatComeWhileAMovieLoadsFollowIt()
    {
        Files f;
        f.openImage(numbered(7));
        f.chooseFromMenu(ToolBar::Delete, 1);
        auto& steps = f.loadSlowly(3, 1);
        f.fetchPicture(8);
        // It is seen and told of at once, but no entry yet.
        QCOMPARE(f.picture(), numbered(8));
        QCOMPARE(f.told(), (QStringList{"change http://127.0.0.1/a.jpg", "done"}));
        QCOMPARE(f.caption(), "Image N/A");
        f.openImage(numbered(9));
        steps.setInterval(0);
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.caption(), "Image 5");
        QCOMPARE(f.picture(), numbered(9));
        for (const int number : {8, 3, 2, 1, 9}) {
            f.press(ToolBar::Back);
            QCOMPARE(f.picture(), numbered(number));
        }
        f.press(ToolBar::ToggleView);
        QCOMPARE(f.part<ThumbView>("tvMain").ThumbCount(), 5);
    }

    void whatWaitsForAMovieIsDeletedWithTheRest()
    {
        Files f;
        auto& steps = f.loadSlowly(3, 1);
        f.fetchPicture(8);
        f.chooseFromMenu(ToolBar::Delete, 2);
        steps.setInterval(0);
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.caption(), "Image 1");
        f.press(ToolBar::Back);
        QCOMPARE(f.picture(), numbered(3));
        QCOMPARE(f.caption(), "Image 2");
    }

    void whatWaitsFollowsAMovieThatFails()
    {
        Files f;
        f.cam.LoadMovie(f.write("m.pvm", movieOf(1) + "&IMAGE&no picture"));
        f.timer("tmrMovie").setInterval(600'000);
        f.fetchPicture(8);
        f.timer("tmrMovie").setInterval(0);
        QVERIFY(answerMessage(QMessageBox::Ok).shown);
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.picture(), numbered(8));
        QCOMPARE(f.caption(), "Image 2");
        // The next one is an entry at once again.
        f.openImage(numbered(9));
        QCOMPARE(f.caption(), "Image 3");
    }

    void aLoadStoppedBeforeItsFirstFrameShowsNothing()
    {
        Files f;
        f.openImage(numbered(7));
        f.loadSlowly(3, 0);
        f.cam.findChild<frmMovie*>()->close();
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.caption(), "Image N/A");
        QVERIFY(f.part<ImageView>("imgMain").Picture().isNull());
    }

    void loadingLeavesTheStrip_data()
    {
        const Rows<bool> row("meanwhile");
        row("shown before", false);
        row("shown meanwhile", true);
    }

    void loadingLeavesTheStrip()
    {
        QFETCH(bool, meanwhile);
        Files f;
        f.openImage(numbered(7));
        auto& strip = f.part<ThumbView>("tvMain");
        if (!meanwhile)
            f.press(ToolBar::ToggleView);
        auto& steps = f.loadSlowly(3, 1);
        QVERIFY(strip.isHidden());
        if (meanwhile)
            f.press(ToolBar::ToggleView);
        QCOMPARE(strip.isVisible(), meanwhile);
        steps.setInterval(0);
        QTRY_VERIFY(!f.isWorking());
        QVERIFY(strip.isHidden());
        QVERIFY(f.part<ImageView>("imgMain").isVisible());
        QCOMPARE(f.enabledButtons(), AllButtons);
        QCOMPARE(f.caption(), "Image 1");
    }
};

QTEST_MAIN(WebCamFilesTest)
#include "tst_WebCamFiles.moc"
