// Movies and the main window's life: one that it is started with, and its end while long work runs
// or a file is asked for.

#include "shared/Timer.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/ScratchFile.h"
#include "support/ShownMain.h"
#include "support/TimeSeam.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"

namespace {

QString caption(ShownMain& m)
{
    return m.part<QLabel>("lblPic").text();
}

void load(ShownMain& m, int frames)
{
    m.write("m.pvm", plainMovie(frames));
    m.part<WebCam>("Cam").LoadMovie(m.path("m.pvm"));
    QTRY_COMPARE(caption(m), "Image 1");
}

void chooseFromMenu(ShownMain& m, int button, int item)
{
    const auto* face = m.part<ToolBar>("tbMain").button(button);
    face->findChild<QMenu*>()->actions()[item - 1]->trigger();
}

/// Closes the window; then nothing may run or show its progress, and the preferences are written.
/// Dialogs go with the window itself, as the program ends.
void closeAndLook(ShownMain& m)
{
    m.made().close();
    for (const auto* window : QApplication::topLevelWidgets()) {
        if (!qobject_cast<const QDialog*>(window))
            QVERIFY2(!window->isVisible(), window->metaObject()->className());
    }
    for (const auto* timer : m.made().findChildren<Timer*>())
        QVERIFY2(!timer->Enabled(), qPrintable(timer->objectName()));
    QVERIFY(m.preferences().startsWith("[VIEW]\r\n"));
}

} // namespace

class frmMainMoviesTest : public QObject
{
    Q_OBJECT
private slots:
    void aMovieOnTheCommandLineIsLoaded()
    {
        ShownMain m;
        m.write("A movie.PVM", plainMovie(3));
        m.made('"' + m.path("A movie.PVM") + '"');
        m.shown();
        QTRY_COMPARE(caption(m), "Image 1");
        QTest::mouseClick(m.part<ToolBar>("tbMain").button(ToolBar::Back), Qt::LeftButton);
        QCOMPARE(caption(m), "Image 3");
    }

    void aMissingMovieOnTheCommandLineIsAnError()
    {
        ShownMain m;
        m.made(m.path("missing.pvm"));
        m.shown();
        const ShownMessage message = answerMessage(QMessageBox::Ok);
        QCOMPARE(message.title, "Error");
        QCOMPARE(message.text, "Out of memory");
    }

    void theEndWhileAMovieLoads()
    {
        OpenMain m;
        m.write("m.pvm", plainMovie(30));
        m.part<WebCam>("Cam").LoadMovie(m.path("m.pvm"));
        auto& steps = timerOf(m.made(), "tmrMovie");
        for (int i = 0; i < 6; ++i)
            steps.elapse();
        QVERIFY(steps.Enabled());
        closeAndLook(m);
    }

    void theEndWhileAMovieIsSavedKeepsTheOldFile()
    {
        OpenMain m;
        load(m, 10);
        const QByteArray old = contentOf(m.path("m.pvm"));
        chooseFromMenu(m, ToolBar::Save, 2);
        acceptFile(m.path("m.pvm"));
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QTRY_VERIFY(m.made().findChild<Timer*>("tmrMovie"));
        timerOf(m.made(), "tmrMovie").elapse();
        closeAndLook(m);
        QCOMPARE(contentOf(m.path("m.pvm")), old);
        QCOMPARE(QDir(m.path(".")).entryList(QDir::Files),
                 (QStringList{"list.dat", "m.pvm", "pref.ini", "pvm.jpg"}));
    }

    void theEndWhileAMoviePlays()
    {
        OpenMain m;
        load(m, 3);
        QTest::mouseClick(m.part<ToolBar>("tbMain").button(ToolBar::PlayMovie), Qt::LeftButton, {},
                          QPoint(12, 14));
        QVERIFY(timerOf(m.made(), "tmrPlay").Enabled());
        closeAndLook(m);
    }

    void theEndWhileAFileIsAskedFor()
    {
        OpenMain m;
        load(m, 1);
        chooseFromMenu(m, ToolBar::Save, 2);
        acceptFile(m.path("m.pvm"));
        QVERIFY(openDialog<QMessageBox>()); // whether to replace the file
        closeAndLook(m);
    }

    void theEndWhileAnErrorIsShown()
    {
        OpenMain m;
        m.part<WebCam>("Cam").LoadMovie(m.path("missing.pvm"));
        QVERIFY(openDialog<QMessageBox>());
        closeAndLook(m);
    }

    void temporaryFilesOfMoviesGo()
    {
        OpenMain m;
        load(m, 2);
        QVERIFY(QFileInfo::exists(m.path("tt.jpg")));
        closeAndLook(m);
        QVERIFY(!QFileInfo::exists(m.path("tt.jpg")));
    }
};

QTEST_MAIN(frmMainMoviesTest)
#include "tst_frmMainMovies.moc"
