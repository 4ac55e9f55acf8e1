// How the main window goes: what it writes, and that it does so once, whoever ends it.

#include "shared/Timer.h"
#include "support/Dialogs.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"

namespace {

const QByteArray NoFavourites = "[FAVORITES]\r\nCOUNT=0\r\n";
const QByteArray DesignView = "[VIEW]\r\nLIST=True\r\nTB=True\r\nGOTO=True\r\nNEW=True\r\n"
                              "TRAY=True\r\nOSIZE=False\r\nONTOP=False\r\n";

/// A window that will not close.
class StubbornWindow : public QWidget
{
protected:
    void closeEvent(QCloseEvent* event) override { event->ignore(); }
};

/// The program's exit code when the window shuts it down; 1 where it runs on all the same.
int codeOfShutDown(ShownMain& m)
{
    QTimer::singleShot(0, &m.made(), &frmMain::shutDown);
    QTimer giveUp;
    giveUp.callOnTimeout([] { QCoreApplication::exit(1); });
    giveUp.start(5'000);
    return QCoreApplication::exec();
}

} // namespace

class frmMainCloseTest : public QObject
{
    Q_OBJECT
private slots:
    void writesTheViewKeysInOrder()
    {
        ShownMain m;
        m.shown().close();
        QVERIFY(!m.made().isVisible());
        QCOMPARE(m.preferences(), DesignView + NoFavourites);
    }

    void writesWhatWasSwitched()
    {
        OpenMain m;
        for (const char* name :
             {"mnuViewTb", "mnuViewGoto", "mnuViewNew", "mnuViewOSize", "mnuOptOnTop"})
            m.entry(name).trigger();
        m.made().close();
        QCOMPARE(m.preferences(), "[VIEW]\r\nLIST=True\r\nTB=False\r\nGOTO=False\r\nNEW=False\r\n"
                                  "TRAY=True\r\nOSIZE=True\r\nONTOP=True\r\n" +
                                      NoFavourites);
        // And the next run finds it so.
        m.madeAgain();
        QVERIFY(!m.part<WebCam>("Cam").ShowToolBar());
        QVERIFY(m.part<QComboBox>("cmbUrl").isHidden());
        QVERIFY(!m.part<WebCam>("Cam").NewOnly());
        QVERIFY(m.part<WebCam>("Cam").OriginalSize());
        QVERIFY(m.made().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void keepIsWrittenOnlyWhileChecked()
    {
        ShownMain m;
        m.entry("mnuTmrKeep").trigger();
        m.made().close();
        QCOMPARE(m.preferences(), DesignView + "KEEP=True\r\n" + NoFavourites);
        m.madeAgain();
        QVERIFY(m.part<WebCam>("Cam").KeepRefreshing());
        m.entry("mnuTmrKeep").trigger();
        m.made().close();
        QCOMPARE(m.preferences(), DesignView + NoFavourites);
    }

    void proportionsAreWrittenOnlyWhileChecked()
    {
        ShownMain m;
        m.shown();
        m.choose("mnuView", "mnuViewProp");
        QVERIFY(m.part<WebCam>("Cam").KeepProportions());
        m.made().close();
        QCOMPARE(m.preferences(), DesignView + "[WINDOW]\r\nPROPORTIONS=True\r\n" + NoFavourites);
        m.madeAgain();
        QVERIFY(m.entry("mnuViewProp").isChecked());
        QVERIFY(m.part<WebCam>("Cam").KeepProportions());
        m.entry("mnuViewProp").trigger();
        QVERIFY(!m.part<WebCam>("Cam").KeepProportions());
        m.made().close();
        QVERIFY(!m.preferences().contains("PROPORTIONS"));
    }

    void anUnreadableTextAboutProportionsIsIgnored()
    {
        for (const char* text : {"", "yes", "False"}) {
            ShownMain m;
            m.write("pref.ini", QByteArray("[WINDOW]\r\nPROPORTIONS=") + text + "\r\n");
            QVERIFY(!m.entry("mnuViewProp").isChecked());
            QVERIFY(!m.part<WebCam>("Cam").KeepProportions());
        }
    }

    void favouritesWithoutANameLeaveNoGap()
    {
        ShownMain m;
        m.write("pref.ini",
                "[FAVORITES]\r\nNAME[0]=first\r\nURL[0]=cam/1\r\nNAME[1]=\r\nURL[1]=cam/2"
                "\r\nNAME[2]=third\r\nURL[2]=cam/3\r\nCOUNT=3\r\n");
        m.made();
        // Written into a new file, so that the order shows.
        QVERIFY(QFile::remove(m.path("pref.ini")));
        m.made().close();
        QCOMPARE(m.preferences(),
                 DesignView + "[FAVORITES]\r\nNAME[0]=first\r\nURL[0]=cam/1\r\nNAME[1]=third\r\n"
                              "URL[1]=cam/3\r\nCOUNT=2\r\n");
    }

    void pairsOfALongerListStay()
    {
        ShownMain m;
        const QByteArray old = "[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=1\r\nCOUNT=1\r\nNAME[5]=old\r\n"
                               "URL[5]=cam/5\r\n";
        m.write("pref.ini", old);
        m.made().close();
        QCOMPARE(m.preferences(), old + DesignView);
    }

    void exitCloses()
    {
        OpenMain m;
        m.choose("mnuOpt", "mnuOptExit");
        QTRY_VERIFY(!m.made().isVisible());
        QCOMPARE(m.preferences(), DesignView + NoFavourites);
    }

    void exitWithoutSavingAsks()
    {
        OpenMain m;
        m.choose("mnuOpt", "mnuOptExitWO");
        auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QCOMPARE(box->windowTitle(), "Exit Without Saving");
        QCOMPARE(box->text(), "This option allows you to exit and NOT save the Cam List.\r\n\r\n"
                              "Are you sure you want to exit?");
        QCOMPARE(box->icon(), QMessageBox::Question);
        QCOMPARE(box->standardButtons(), QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(box->buttons().size(), 2);
        QVERIFY(box->isModal());
        QCOMPARE(box->parentWidget(), &m.made());
        box->close();
    }

    void exitWithoutSavingAnsweredYesWritesThePreferences()
    {
        ShownMain m;
        m.write("pref.ini", "[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=1\r\nCOUNT=9\r\n");
        const QByteArray old = "Cities\xFFHarbour\xFFURL1\r\n";
        m.write("list.dat", old);
        m.shown();
        m.entry("mnuViewNew").trigger();
        m.choose("mnuOpt", "mnuOptExitWO");
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QTRY_VERIFY(!m.made().isVisible());
        QVERIFY(m.preferences().contains("NEW=False\r\n"));
        QVERIFY(m.preferences().contains("COUNT=1\r\n"));
        QCOMPARE(contentOf(m.path("list.dat")), old);
    }

    void exitWithoutSavingAnsweredNoDoesNothing_data()
    {
        const Rows<bool> row("byEscape");
        row("No", false);
        row("Escape", true);
    }

    void exitWithoutSavingAnsweredNoDoesNothing()
    {
        QFETCH(bool, byEscape);
        OpenMain m;
        m.choose("mnuOpt", "mnuOptExitWO");
        auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QSignalSpy gone(box, &QObject::destroyed);
        if (byEscape)
            QTest::keyClick(box, Qt::Key_Escape);
        else
            QVERIFY(answerMessage(QMessageBox::No).shown);
        QTRY_COMPARE(gone.count(), 1);
        QVERIFY(m.made().isVisible());
        QVERIFY(!QFileInfo::exists(m.path("pref.ini")));
        // The window is as usable as before.
        QTRY_COMPARE(QApplication::activeWindow(), &m.made());
        m.choose("mnuOpt", "mnuOptExit");
        QTRY_VERIFY(!m.made().isVisible());
    }

    void aSecondEndDoesNothing()
    {
        ShownMain m;
        m.shown().close();
        m.write("pref.ini", "another instance wrote this");
        m.write("tt.jpg", "and this");
        m.made().close();
        m.made().shutDown();
        m.made().show();
        m.made().close();
        QCoreApplication::processEvents();
        QCOMPARE(m.preferences(), "another instance wrote this");
        QVERIFY(QFileInfo::exists(m.path("tt.jpg")));
    }

    void theEndOfTheSessionWrites()
    {
        OpenMain m;
        // Nobody but Qt can make a session manager; the window does not look at it.
        int manager = 0;
        QVERIFY(QMetaObject::invokeMethod(qApp, "commitDataRequest", Qt::DirectConnection,
                                          QGenericArgument("QSessionManager&", &manager)));
        QCOMPARE(m.preferences(), DesignView + NoFavourites);
        m.write("pref.ini", "");
        m.made().close();
        QCOMPARE(m.preferences(), "");
    }

    void theTemporaryFilesGo()
    {
        ShownMain m;
        for (const char* name : {"tt.jpg", "tt.GIF", "tt.bmp", "pvm.bmp", "keep.jpg"})
            m.write(name, "x");
        m.writeBesideProgram("tt.jpg", "x");
        m.shown().close();
        QCOMPARE(QDir(m.path(".")).entryList(QDir::Files),
                 (QStringList{"keep.jpg", "list.dat", "pref.ini"}));
        QVERIFY(QFileInfo::exists(m.programPath("tt.jpg")));
    }

    void aFetchUnderWayIsStopped()
    {
        ScriptedServer server;
        server.listen();
        server.play(Script{{"HTTP/1.0 200 OK\r\n"}, Script::End::KeepOpen});
        OpenMain m;
        QTest::keyClicks(&m.part<QComboBox>("cmbUrl"), server.url());
        QTest::keyClick(&m.part<QComboBox>("cmbUrl"), Qt::Key_Return);
        QTRY_COMPARE(server.requests().size(), 1);
        m.made().close();
        QTRY_COMPARE(server.openConnections(), 0);
        for (const auto* timer : m.made().findChildren<Timer*>())
            QVERIFY2(!timer->Enabled(), qPrintable(timer->objectName()));
    }

    void nothingIsStartedAnyMore()
    {
        ScriptedServer server;
        server.listen();
        OpenMain m;
        auto& bar = m.part<QComboBox>("cmbUrl");
        QTest::keyClicks(&bar, server.url());
        // Keys that wait are handled while the preferences are written.
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(&bar, new QKeyEvent(type, Qt::Key_Return, Qt::NoModifier));
        m.made().close();
        QCoreApplication::processEvents();
        QCOMPARE(m.part<WebCam>("Cam").Url(), "");
        QCOMPARE(server.connections(), 0);
    }

    void anOpenQuestionDoesNotKeepTheProgram()
    {
        OpenMain m;
        m.entry("mnuOptExitWO").trigger();
        QVERIFY(openDialog<QMessageBox>());
        // Enter alone does not leave the list unsaved.
        QCOMPARE(openDialog<QMessageBox>()->defaultButton(),
                 openDialog<QMessageBox>()->button(QMessageBox::No));
        QCOMPARE(codeOfShutDown(m), 0);
        QCOMPARE(m.preferences(), DesignView + NoFavourites);
    }

    void manyMessagesDoNotKeepTheProgram()
    {
        QByteArray line = "Cities\xFFHarbour\xFFURL1";
        for (int i = 0; i < 10'000; ++i)
            line += "\xFF"
                    "Cities\xFFHarbour\xFFURL1";
        ShownMain m;
        line += "\r\n";
        m.write("list.dat", line);
        m.shown();
        QVERIFY(openDialog<QMessageBox>());
        QCOMPARE(codeOfShutDown(m), 0);
        // Nobody changed the list, so it is as it was.
        QVERIFY(contentOf(m.path("list.dat")) == line);
    }

    void aWindowThatWillNotCloseDoesNotKeepTheProgram()
    {
        OpenMain m;
        StubbornWindow other;
        other.show();
        QVERIFY(waitForExposed(&other));
        QCOMPARE(codeOfShutDown(m), 0);
    }
};

QTEST_MAIN(frmMainCloseTest)
#include "tst_frmMainClose.moc"
