// The main window in a person's hands: shortcuts, goto bar and favourites.

#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"

class frmMainUseTest : public QObject
{
    Q_OBJECT
private slots:
    void shortcutsSwitch_data()
    {
        const Rows<Qt::Key, QString, QByteArray> row("key", "entry", "property");
        row("list", Qt::Key_L, "mnuViewList", {});
        row("toolbar", Qt::Key_T, "mnuViewTb", "ShowToolBar");
        row("goto bar", Qt::Key_G, "mnuViewGoto", {});
        row("new images only", Qt::Key_I, "mnuViewNew", "NewOnly");
        row("original size", Qt::Key_O, "mnuViewOSize", "OriginalSize");
    }

    void shortcutsSwitch()
    {
        QFETCH(Qt::Key, key);
        QFETCH(QString, entry);
        QFETCH(QByteArray, property);
        OpenMain m;
        auto& bar = m.part<QComboBox>("cmbUrl");
        const auto target = [&] {
            if (!property.isEmpty())
                return m.part<WebCam>("Cam").property(property).toBool();
            return m.part<QWidget>(entry == "mnuViewList" ? "cList" : "cmbUrl").isVisible();
        };
        QCOMPARE(QApplication::focusWidget(), &bar);
        const bool atFirst = target();
        QCOMPARE(m.entry(entry).isChecked(), atFirst);
        for (const bool now : {!atFirst, atFirst}) {
            // To whatever has the keyboard: with the goto bar hidden that is another control.
            QWidget* const receiver = QApplication::focusWidget();
            QTest::keyClick(receiver ? receiver : &m.made(), key, Qt::ControlModifier);
            QCOMPARE(m.entry(entry).isChecked(), now);
            QCOMPARE(target(), now);
            QCOMPARE(bar.currentText(), "");
        }
    }

    void hiddenPartsLeaveTheirRoomToTheViewer()
    {
        OpenMain m;
        auto& cam = m.part<WebCam>("Cam");
        const int area = m.made().centralWidget()->height();
        QVERIFY(cam.height() < area - 20);
        m.entry("mnuViewGoto").trigger();
        QCOMPARE(cam.height(), area);
        m.entry("mnuViewGoto").trigger();
        QVERIFY(cam.height() < area - 20);
        QCOMPARE(m.part<QComboBox>("cmbUrl").width(), cam.width());

        const int image = m.part<QWidget>("imgMain").height();
        m.entry("mnuViewTb").trigger();
        QVERIFY(!m.part<ToolBar>("tbMain").isVisible());
        QCOMPARE(m.part<QWidget>("imgMain").height(), image + ToolBar::HeightPx);
    }

    void alwaysOnTopIsSwitchedFromTheMenu()
    {
        OpenMain m;
        for (const bool on : {true, false}) {
            m.choose("mnuOpt", "mnuOptOnTop");
            QTRY_COMPARE(m.entry("mnuOptOnTop").isChecked(), on);
            QCOMPARE(m.made().windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint), on);
            QVERIFY(m.made().isVisible());
        }
    }

    void anAddressIsFetchedAndMirrored()
    {
        ScriptedServer server;
        server.listen();
        server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        OpenMain m;
        auto& bar = m.part<QComboBox>("cmbUrl");
        QSignalSpy changes(&m.part<WebCam>("Cam"), &WebCam::ImageChange);
        QTest::keyClicks(&bar, server.url("/dir/a.jpg"));
        QTest::keyClick(&bar, Qt::Key_Return);
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(server.requests().size(), 1);
        QVERIFY(server.requests()[0].startsWith("GET /dir/a.jpg HTTP/1."));
        QCOMPARE(changes[0].value(1).toString(), "http://127.0.0.1/dir/a.jpg");
        QCOMPARE(bar.currentText(), "http://" + server.url("/dir/a.jpg")); // with its port
        QCOMPARE(bar.itemText(0), server.url("/dir/a.jpg"));               // as it was typed
    }

    void typingIsNotDisturbedByARefresh()
    {
        ScriptedServer server;
        server.listen();
        server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        OpenMain m;
        auto& bar = m.part<QComboBox>("cmbUrl");
        auto& cam = m.part<WebCam>("Cam");
        cam.setNewOnly(false);
        cam.setUrl(server.url());
        QSignalSpy changes(&cam, &WebCam::ImageChange);
        QTest::keyClicks(&bar, "next.exa");
        cam.Refresh();
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(bar.currentText(), "next.exa");
        QCOMPARE(bar.lineEdit()->cursorPosition(), 8);
        QTest::keyClicks(&bar, "mple");
        cam.Refresh();
        QTRY_COMPARE(changes.count(), 2);
        QCOMPARE(bar.currentText(), "next.example");
        QTest::keyClick(&bar, Qt::Key_Escape);
        QCOMPARE(bar.currentText(), "http://" + server.url());
    }

    void aFavouriteOpensItsCameraWithItsHeader()
    {
        ScriptedServer server;
        server.listen();
        server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        ShownMain m;
        const QString key = server.url("/f.jpg") + QChar(1) + "Cookie: a=b";
        m.write("pref.ini", "[FAVORITES]\r\nNAME[0]=Other\r\nURL[0]=other.example\r\n"
                            "NAME[1]=AT&T roof\r\nURL[1]=HTTP://" +
                                key.toLatin1() + "\r\nCOUNT=2\r\n");
        m.shown();
        auto& cam = m.part<WebCam>("Cam");
        QSignalSpy changes(&cam, &WebCam::ImageChange);
        m.choose("mnuFav", "mnuFavGo(1)");
        QTRY_COMPARE(cam.Url(), key); // without its scheme
        const QString address = "http://" + server.url("/f.jpg");
        QCOMPARE(m.part<QComboBox>("cmbUrl").currentText(), address);
        QTRY_COMPARE(changes.count(), 1);
        QVERIFY(server.requests()[0].startsWith("GET /f.jpg HTTP/1."));
        QVERIFY(server.requests()[0].contains("\r\nCookie: a=b\r\n"));
        QCOMPARE(m.part<QComboBox>("cmbUrl").currentText(), address);
    }

    void aFavouriteReplacesWhatIsBeingTyped()
    {
        ScriptedServer server;
        server.listen();
        OpenMain m("[FAVORITES]\r\nNAME[0]=One\r\nURL[0]=" + server.url().toLatin1() +
                   "\r\nCOUNT=1\r\n");
        QTest::keyClicks(&m.part<QComboBox>("cmbUrl"), "half an addr");
        m.entry("mnuFavGo(0)").trigger();
        QCOMPARE(m.part<QComboBox>("cmbUrl").currentText(), "http://" + server.url());
    }

    void manyFavouritesStayWithinTheScreen()
    {
        QByteArray content = "[FAVORITES]\r\n";
        for (int i = 0; i < 1'000; ++i) {
            const QByteArray n = QByteArray::number(i);
            content +=
                "NAME[" + n + "]=Camera number " + n + "\r\nURL[" + n + "]=cam/" + n + "\r\n";
        }
        OpenMain m(content + "COUNT=1000\r\n");
        auto& menu = m.part<QMenu>("mnuFav");
        QTest::keyClick(&m.part<QComboBox>("cmbUrl"), Qt::Key_F, Qt::AltModifier);
        QVERIFY(waitForExposed(&menu));
        QVERIFY(m.made().screen()->geometry().contains(menu.geometry()));
        // The last one can be reached: keys scroll to it.
        QTest::keyClick(&menu, Qt::Key_End);
        QTRY_COMPARE(menu.activeAction(), &m.entry("mnuFavGo(999)"));
        QVERIFY(menu.rect().contains(menu.actionGeometry(menu.activeAction())));
        menu.close();
    }
};

QTEST_MAIN(frmMainUseTest)
#include "tst_frmMainUse.moc"
