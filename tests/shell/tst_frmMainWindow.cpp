// What the main window remembers from one run to the next: its place, the interval, the last
// folder and the camera.

#include "camlist/CamList.h"
#include "shell/WindowPreferences.h"
#include "shell/parts/MainArea.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "support/TimeSeam.h"
#include "viewer/WebCam.h"

#include <QAction>
#include <QScreen>
#include <QTreeView>

#include <memory>

using namespace Qt::Literals::StringLiterals;

class frmMainWindowTest : public QObject
{
    Q_OBJECT
private:
    /// The lines of the section WINDOW.
    QStringList kept()
    {
        QStringList lines = QString::fromLatin1(main->preferences()).split("\r\n");
        lines = lines.mid(lines.indexOf("[WINDOW]") + 1);
        if (!main->preferences().contains("[WINDOW]"))
            return {};
        const auto isNext = [](const QString& line) { return line.isEmpty() || line[0] == '['; };
        return lines.first(std::find_if(lines.begin(), lines.end(), isNext) - lines.begin());
    }
    WebCam& cam() { return main->part<WebCam>("Cam"); }
    QString tag() { return timerOf(cam(), "tmrRe").Tag(); }

    std::unique_ptr<ShownMain> main;

private slots:
    void init()
    {
        main = std::make_unique<ShownMain>();
        main->write("list.dat", "Demo\xFF"
                                "Clock\xFF"
                                "cam.example/a.jpg\xFF"
                                "Demo\xFF"
                                "Other\xFF"
                                "cam.example/b.jpg\r\n");
    }
    void cleanup() { main.reset(); }

    void theIconComesWithTheFirstPaint()
    {
        const frmMain& window = main->made();
        QVERIFY(window.windowIcon().isNull());
        main->shown();
        QTRY_COMPARE(window.windowIcon().name(), "pevora");
    }

    void aWindowThatStartsMinimisedHasItsIcon()
    {
        frmMain& window = main->made();
        window.showMinimized();
        timerOf(window, "tmrFirstPaint").elapse();
        QCOMPARE(window.windowIcon().name(), "pevora");
    }

    void aPlaceIsMovedIntoAScreen_data()
    {
        const Rows<QRect, QRect> row("place", "shown");
        // Screens of 1000 x 800 and, to their right, of 600 x 500; a frame of 4, above of 28.
        row("inside", QRect(100, 100, 400, 300), QRect(100, 100, 400, 300));
        row("reaching out to the left and above", QRect(-100, -50, 400, 300),
            QRect(4, 28, 400, 300));
        row("reaching out below", QRect(100, 700, 400, 300), QRect(100, 496, 400, 300));
        row("larger than the screen", QRect(0, 0, 3000, 2000), QRect(4, 28, 992, 768));
        row("on the second screen", QRect(1100, 100, 300, 300), QRect(1100, 100, 300, 300));
        row("mostly on the second", QRect(900, 100, 400, 300), QRect(1004, 100, 400, 300));
        row("on no screen", QRect(5000, 100, 400, 300), QRect());
        row("empty", QRect(100, 100, 0, 300), QRect());
        row("none", QRect(), QRect());
    }

    void aPlaceIsMovedIntoAScreen()
    {
        QFETCH(QRect, place);
        QTEST(WindowPreferences::within(place, {{0, 0, 1000, 800}, {1000, 0, 600, 500}}), "shown");
    }

    void whatIsAsByDefaultIsNotKept()
    {
        main->shown().shutDown();
        QCOMPARE(kept(), QStringList());
    }

    void aWindowThatWasMovedComesBack()
    {
        main->shown().setGeometry(150, 120, 900, 500);
        QTRY_COMPARE(main->made().geometry(), QRect(150, 120, 900, 500));
        main->made().shutDown();
        QCOMPARE(kept(), QStringList{"PLACE=150 120 900 500"});
        main->madeAgain();
        main->shown();
        QTRY_COMPARE(main->made().geometry(), QRect(150, 120, 900, 500));
        // Unmoved, it is still remembered.
        main->made().shutDown();
        QCOMPARE(kept(), QStringList{"PLACE=150 120 900 500"});
    }

    void aMaximisedWindowComesBackMaximised()
    {
        main->shown().setGeometry(150, 120, 900, 500);
        QTRY_COMPARE(main->made().geometry(), QRect(150, 120, 900, 500));
        main->made().showMaximized();
        QTRY_VERIFY(main->made().width() > 1'200);
        main->made().shutDown();
        QVERIFY(kept().contains("MAXIMISED=True"));
        QVERIFY(kept().contains("PLACE=150 120 900 500"));
        main->madeAgain();
        QVERIFY(main->made().isMaximized());
        main->shown();
        QTRY_VERIFY(main->made().width() > 1'200);
        main->made().showNormal();
        QTRY_COMPARE(main->made().size(), QSize(900, 500));
    }

    void aPictureAloneIsNoPlaceOfTheWindow_data()
    {
        const Rows<bool> row("isMaximised");
        row("normal", false);
        row("maximised", true);
    }

    void aPictureAloneIsNoPlaceOfTheWindow()
    {
        QFETCH(bool, isMaximised);
        main->shown().setGeometry(150, 120, 900, 500);
        QTRY_COMPARE(main->made().geometry(), QRect(150, 120, 900, 500));
        if (isMaximised) {
            main->made().showMaximized();
            QTRY_VERIFY(main->made().width() > 1'200);
        }
        main->entry("mnuViewFull").trigger();
        QTRY_COMPARE(main->made().size(), main->made().screen()->size());
        QTRY_VERIFY(main->made().isFullScreen());
        main->made().shutDown();
        QVERIFY2(kept().contains("PLACE=150 120 900 500"), qPrintable(kept().join(' ')));
        QCOMPARE(kept().contains("MAXIMISED=True"), isMaximised);
    }

    void aWindowOnItsWayToTheWholeScreenKeepsItsPlace()
    {
        main->shown().setGeometry(150, 120, 900, 500);
        QTRY_COMPARE(main->made().geometry(), QRect(150, 120, 900, 500));
        // Some window managers give the size first and the state later.
        const QRect whole = main->made().screen()->availableGeometry().adjusted(1, 21, -1, -1);
        main->made().setGeometry(whole);
        QTRY_COMPARE(main->made().size(), whole.size());
        main->made().shutDown();
        QCOMPARE(kept(), QStringList{"PLACE=150 120 900 500"});
    }

    void aPlaceAtTheEdgeOfTheScreenStays()
    {
        // Its frame may be thinner than the room that is left for one.
        const QRect room = main->shown().screen()->availableGeometry();
        const QRect place(room.topLeft() + QPoint(2, 24), QSize(700, 400));
        main->made().setGeometry(place);
        QTRY_COMPARE(main->made().geometry(), place);
        main->made().shutDown();
        main->madeAgain();
        main->shown();
        QTRY_COMPARE(main->made().geometry(), place);
    }

    void aPlaceThatNoScreenHasIsMoved()
    {
        main->write("pref.ini", "[WINDOW]\r\nPLACE=-300 -200 5000 4000\r\n");
        const QRect screen = main->made().screen()->availableGeometry();
        QVERIFY(screen.contains(main->made().geometry()));
        QVERIFY(main->made().width() > screen.width() / 2);
    }

    void theListsWidthIsKept()
    {
        main->shown();
        auto& area = *main->made().findChild<MainArea*>();
        const int byDefault = area.listWidth();
        area.setListWidth(byDefault + 60);
        main->made().shutDown();
        QCOMPARE(kept(), QStringList{"LISTWIDTH=" + QString::number(byDefault + 60)});
        main->madeAgain();
        main->shown();
        QCOMPARE(main->part<CamList>("cList").width(), byDefault + 60);
        main->made().findChild<MainArea*>()->setListWidth(byDefault);
        main->made().shutDown();
        QCOMPARE(kept(), QStringList());
    }

    void theIntervalIsKept_data()
    {
        const Rows<int, QString, QString> row("seconds", "checked", "caption");
        row("preset", 10, "mnuTmrSel(10)", "10 secs");
        row("custom", 77, "mnuTmrSel(99)", "77 sec(s)");
        row("the number of the custom entry", 99, "mnuTmrSel(99)", "99 sec(s)");
        row("the smallest", -32768, "mnuTmrSel(99)", "-32768 sec(s)");
    }

    void theIntervalIsKept()
    {
        QFETCH(int, seconds);
        QFETCH(QString, checked);
        cam().setInterval(seconds);
        main->made().shutDown();
        QCOMPARE(kept(), QStringList{"INTERVAL=" + QString::number(seconds)});
        main->madeAgain();
        QCOMPARE(tag(), QString::number(seconds));
        auto& entry = main->part<QAction>(checked);
        QVERIFY(entry.isChecked());
        QTEST(entry.text(), "caption");
        // Back at the default it goes.
        main->part<QAction>("mnuTmrSel(30)").trigger();
        main->made().shutDown();
        QCOMPARE(kept(), QStringList());
    }

    void theLastFolderIsKept()
    {
        main->made();
        cam().setLastFolder(main->path({}));
        main->made().shutDown();
        main->madeAgain();
        QCOMPARE(cam().LastFolder(), main->path({}));
    }

    void theCameraLastWatchedIsSelectedAndNotFetched()
    {
        ScriptedServer server;
        server.listen();
        server.play(httpAnswer({}, {}, "404 Not Found"));
        main->write("list.dat", "Demo\xFF"
                                "Clock\xFF"
                                "cam.example/a.jpg\xFF"
                                "Demo\xFF"
                                "Mine\xFF" +
                                    server.url().toLatin1() + "\r\n");
        emit main->part<CamList>("cList").Click("Mine", server.url());
        QTRY_COMPARE(server.connections(), 1);
        main->made().shutDown();
        QVERIFY(kept().contains("CAMERA=" + server.url()));
        main->madeAgain();
        main->shown();
        QCOMPARE(main->part<QTreeView>("tvwCat").currentIndex().data().toString(), "Mine");
        QCOMPARE(cam().Url(), "");
        QCOMPARE(server.connections(), 1);
        // Also after a run without any camera.
        main->made().shutDown();
        QVERIFY(kept().contains("CAMERA=" + server.url()));
    }

    void whatIsNoValueIsIgnored()
    {
        main->write(
            "pref.ini",
            "[WINDOW]\r\nPLACE=1 2 3\r\nMAXIMISED=perhaps\r\nLISTWIDTH=wide\r\nINTERVAL=soon\r\n"
            "FOLDER=\r\nCAMERA=nobody\r\n");
        QVERIFY(!main->made().isMaximized());
        QCOMPARE(tag(), "30");
        main->made().shutDown();
        QCOMPARE(kept(), QStringList());
    }

    void aCameraThatIsInNoListIsNotKept()
    {
        // Its header may be a secret, which the user has given to no file.
        main->shown();
        cam().showCamera(u"cam.example/a.jpg"_s + QChar(1) + u"Authorization: Basic c2VjcmV0"_s);
        emit cam().CameraShown(cam().Url());
        main->made().shutDown();
        QVERIFY(!main->preferences().contains("Authorization"));
        QCOMPARE(kept(), QStringList());
    }

    void aKeyThatCouldNotBeReadBackIsNotKept()
    {
        const QString key(750, 'x');
        main->part<CamList>("cList").AddCam("Long", key, "Demo");
        emit main->part<CamList>("cList").Click("Long", key);
        main->made().shutDown();
        QCOMPARE(kept(), QStringList());
    }
};

QTEST_MAIN(frmMainWindowTest)
#include "tst_frmMainWindow.moc"
