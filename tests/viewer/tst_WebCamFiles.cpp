// Images and movies from and to files, by the toolbar's buttons, menus and dialogs.

#include "display/ImageView.h"
#include "display/ThumbView.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/TimeSeam.h"
#include "viewer/movie/frmMovie.h"
#include "viewer/surface/ToolBar.h"

namespace {

QByteArray picture(int number)
{
    return encodedPicture({8 + number, 8}, QColor::fromHsv(number * 37 % 360, 255, 255));
}

QByteArray movieOf(int frames)
{
    QByteArrayList parts;
    for (int number = 1; number <= frames; ++number)
        parts << picture(number);
    return parts.join("&IMAGE&");
}

class Files : public ShownCamera
{
public:
    QString write(const QString& name, const QByteArray& bytes)
    {
        writeFile(path(name), bytes);
        return path(name);
    }
    QByteArray read(const QString& name) { return contentOf(path(name)); }
    QString path(const QString& name) const { return m_files.filePath(name); }

    /// Chooses `file` in the dialog that opens, which then goes.
    static void answer(const QString& file)
    {
        acceptFile(file);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void openImage(const QByteArray& bytes, const QString& name = "a.jpg")
    {
        press(ToolBar::Open);
        answer(write(name, bytes));
    }
    /// Loads a movie of so many pictures, by no dialog.
    void loadMovie(int frames)
    {
        cam.LoadMovie(write("m.pvm", movieOf(frames)));
        QTRY_VERIFY(!isWorking());
    }
    void saveMovie(const QString& name)
    {
        chooseFromMenu(ToolBar::Save, 2);
        answer(path(name));
    }
    /// Fetches a picture from the server.
    void fetchPicture(int number)
    {
        server.listen();
        server.play(pictureAnswer(::picture(number)));
        fetch(server.url());
    }
    void openMovie(const QString& file)
    {
        chooseFromMenu(ToolBar::Open, 2);
        answer(file);
    }
    bool isWorking() { return cam.findChild<Timer*>("tmrMovie") != nullptr; }
    /// As it is a second after each fetch.
    void hideStatus()
    {
        timer("tmrFalse").setEnabled(true);
        timer("tmrFalse").elapse();
    }
    bool statusIsShown() { return part<QWidget>("lbl").isVisible(); }
    /// Begins to save a movie and lets `steps` frames pass; the next waits for its timer.
    void saveSlowly(const QString& name, int steps)
    {
        chooseFromMenu(ToolBar::Save, 2);
        acceptFile(path(name));
        auto& next = timer("tmrMovie");
        next.setInterval(600'000);
        for (int i = 0; i < steps; ++i)
            next.elapse();
    }
    /// The numbers of the pictures that a movie file holds, in order.
    QList<int> framesOf(const QString& name)
    {
        QList<int> numbers;
        const QByteArray movie = read(name);
        qsizetype from = 0;
        for (qsizetype end = 0; end < movie.size(); from = end + 7) {
            end = movie.indexOf("&IMAGE&", from);
            end = end < 0 ? movie.size() : end;
            numbers << Still::fromBytes(movie.mid(from, end - from)).size().width() - 8;
        }
        return numbers;
    }
    QSize size() { return part<ImageView>("imgMain").Picture().size(); }

    ScriptedServer server;

private:
    QTemporaryDir m_files;
};

} // namespace

class WebCamFilesTest : public QObject
{
    Q_OBJECT
private slots:
    void anOpenedImageJoinsTheHistorySilently()
    {
        Files f;
        f.fetchPicture(1);
        const auto told = f.told();
        f.openImage(picture(2));
        QCOMPARE(f.picture(), picture(2));
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
        f.openImage(picture(1));
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
            f.openImage(picture(1));
        f.openImage(picture(2), "b.jpg");
        QCOMPARE(f.caption(), "Image 45");
        QCOMPARE(f.picture(), picture(2));
        f.press(ToolBar::ToggleView);
        QCOMPARE(f.part<ThumbView>("tvMain").ThumbCount(), 45);
    }

    void aFileThatIsNoPictureStopsThere()
    {
        Files f;
        f.openImage(picture(1), "good.jpg");
        f.hideStatus();
        f.openImage("no picture", "bad.jpg");
        QCOMPARE(f.status(), "  Error: Not a picture.");
        QVERIFY(f.statusIsShown());
        QCOMPARE(f.picture(), picture(1));
        QCOMPARE(f.caption(), "Image 1");
    }

    void theImageOnShowIsSaved()
    {
        Files f;
        f.openImage(picture(1));
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
        QCOMPARE(f.picture(), picture(1));
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
        QCOMPARE(f.caption(), "");
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
        QCOMPARE(f.picture(), picture(2));
    }

    void theHistoryIsSavedAndLoadedAgain()
    {
        Files f;
        for (int number = 1; number <= 3; ++number) {
            f.openImage(picture(number));
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
        f.openImage(picture(1));
        f.hideStatus();
        f.chooseFromMenu(ToolBar::Save, item);
        f.answer(f.path("missing folder/m.jpg"));
        QTRY_COMPARE(f.status(), "  Error: Not saved.");
        QVERIFY(f.statusIsShown());
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

    void aSavedMovieHoldsWhatIsThereWhenItsNumberComes()
    {
        Files f;
        f.loadMovie(6);
        f.saveSlowly("n.pvm", 3);
        // Entry 1 goes, the others move up, and what was entry 4 has been passed by.
        f.press(ToolBar::Delete);
        f.timer("tmrMovie").setInterval(0);
        QTRY_VERIFY(!f.isWorking());
        QCOMPARE(f.framesOf("n.pvm"), (QList<int>{1, 2, 3, 5, 6}));
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
};

QTEST_MAIN(WebCamFilesTest)
#include "tst_WebCamFiles.moc"
