// What the main window opens beside itself, and its line to the directory.

#include "cameras/EnteredCamera.h"
#include "camlist/CamList.h"
#include "directory/frmInt.h"
#include "shell/SecondaryWindows.h"
#include "shell/frmWhat.h"
#include "shell/parts/LeftPanel.h"
#include "support/Browser.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"

#include <QCheckBox>
#include <QRadioButton>
#include <QVariantList>

static frmInt* internetList()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* found = qobject_cast<frmInt*>(window))
            return found;
    }
    return nullptr;
}

class SecondaryWindowsTest : public QObject
{
    Q_OBJECT
private slots:
    void theInternetListOpensOnce()
    {
        OpenMain m;
        m.entry("mnuOptInt").trigger();
        frmInt* first = internetList();
        QVERIFY(first && first->isVisible());
        QVERIFY(!first->isModal());
        QVERIFY(!first->parentWidget());
        m.entry("mnuOptInt").trigger();
        QCOMPARE(internetList(), first);
        first->close();
        QTRY_VERIFY(!internetList());
        m.entry("mnuOptInt").trigger();
        QVERIFY(internetList());
    }

    void aMinimisedInternetListComesBack()
    {
        OpenMain m;
        m.entry("mnuOptInt").trigger();
        QVERIFY(waitForExposed(internetList()));
        internetList()->showMinimized();
        QTRY_VERIFY(internetList()->isMinimized());
        m.entry("mnuOptInt").trigger();
        QTRY_VERIFY(!internetList()->isMinimized());
        QVERIFY(internetList()->isVisible());
    }

    void theInternetListIsAsTopmostAsTheWindow()
    {
        OpenMain m;
        const auto isTopmost = [] {
            return internetList()->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint);
        };
        m.entry("mnuOptOnTop").trigger();
        m.entry("mnuOptInt").trigger();
        QVERIFY(isTopmost());
        m.entry("mnuOptOnTop").trigger();
        QVERIFY(!isTopmost());
        m.entry("mnuOptOnTop").trigger();
        QVERIFY(isTopmost());
    }

    void theEndOfTheProgramDropsTheOffer()
    {
        OpenMain m;
        const QPointer<HTTP> http = &m.part<HTTP>("HTTP1");
        m.made().shutDown();
        QVERIFY(!http);
    }

    void aPreviewIsShownByTheViewer()
    {
        OpenMain m;
        m.entry("mnuOptInt").trigger();
        emit internetList()->Preview("127.0.0.1:1/a.jpg\1X: 1");
        QCOMPARE(m.part<WebCam>("Cam").Url(), "127.0.0.1:1/a.jpg\1X: 1");
        QVERIFY(internetList()->isVisible());
    }

    void whatIsFoundJoinsTheList()
    {
        ShownMain m;
        m.write("list.dat", "Cities\xFFHarbour\xFFURL1\r\n");
        m.write("found.zip", "CAMZSights\xFFTower\xFFURL2\r\n");
        m.shown();
        m.entry("mnuOptInt").trigger();
        emit internetList()->Import(m.path("found.zip"));
        m.made().close();
        QCOMPARE(contentOf(m.path("list.dat")),
                 "Cities\xFFHarbour\xFFURL1\xFFSights\xFFTower\xFFURL2\r\n");
    }

    void theEndOfTheProgramClosesTheInternetList()
    {
        OpenMain m;
        m.entry("mnuOptInt").trigger();
        m.made().close();
        QVERIFY(!internetList());
    }

    void aboutIsModalAndAsTopmostAsTheWindow()
    {
        for (const bool topmost : {false, true}) {
            OpenMain m;
            if (topmost)
                m.entry("mnuOptOnTop").trigger();
            m.entry("mnuHelpAb").trigger();
            const auto* what = m.made().findChild<frmWhat*>();
            QVERIFY(what && what->isVisible());
            QVERIFY(what->isModal());
            QCOMPARE(what->windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint), topmost);
        }
    }

    void theHomePageOpensInTheBrowser()
    {
        const Browser browser;
        OpenMain m;
        m.entry("mnuHelpAb").trigger();
        auto* what = m.made().findChild<frmWhat*>();
        auto* home = what->findChild<QLabel*>("lbl(3)");
        QTest::keyClick(home, Qt::Key_Return);
        QCOMPARE(browser.opened, QList<QUrl>{QUrl(home->text())});
    }

    void aSubmissionIsOneRequest()
    {
        ScriptedServer server;
        server.listen();
        server.play("HTTP/1.0 200 OK\r\n\r\n");
        QTemporaryDir folder;
        writeFile(folder.filePath("pref.ini"), "[DIRECTORY]\r\nHOST=127.0.0.1\r\n");
        QWidget form;
        SecondaryWindows windows(&form, folder.path(), server.port());
        windows.submit({QStringLiteral("Z\u00FCrich & \u6771=1"), "http://h/a.jpg", "", "Sights"});
        // Text goes out as files have it: in the old code page where that holds it, else as UTF-8.
        QTRY_COMPARE(server.requests(),
                     QList<QByteArray>{"GET /pevora/?n=Z\xC3\xBCrich+%26+\xE6\x9D\xB1%3D1"
                                       "&a=http://h/a.jpg&c=Sights HTTP/1.0\r\n"
                                       "Referer: HTTP ActiveX Control\r\n"
                                       "Connection: Keep-Alive\r\n"
                                       "User-Agent: Default\r\n"
                                       "Host: 127.0.0.1\r\n"
                                       "Accept: */*\r\n"
                                       "Accept-Language: en\r\n\r\n"});
    }

    void whatIsOfferedIsWhatWasEntered()
    {
        ScriptedServer server;
        server.listen();
        server.play("HTTP/1.0 200 OK\r\n\r\n");
        const QTemporaryDir folder;
        QFile preferences(folder.filePath("pref.ini"));
        QVERIFY(preferences.open(QIODevice::WriteOnly));
        preferences.write("[DIRECTORY]\r\nHOST=127.0.0.1\r\n");
        preferences.close();
        QWidget form;
        LeftPanel left(folder.path(), &form);
        SecondaryWindows windows(&form, folder.path(), server.port());
        connect(&left, &LeftPanel::Submitted, &windows, &SecondaryWindows::submit);
        form.findChild<QRadioButton*>("opt(0)")->click();
        form.findChild<QComboBox*>("cmbCat")->setEditText("Sights");
        form.findChild<QLineEdit*>("txtName")->setText("Tower");
        form.findChild<QLineEdit*>("txtUrl")->setText("http://tower.example/a.jpg");
        form.findChild<QCheckBox*>("chkAdd")->setChecked(true);
        form.findChild<QPushButton*>("cmdAdd")->click();
        QTRY_COMPARE(server.requests().size(), 1);
        QVERIFY(server.requests().first().startsWith(
            "GET /pevora/?n=Tower&a=http://tower.example/a.jpg&c=Sights HTTP/1.0\r\n"));
        left.cList().SaveFile();
        QCOMPARE(contentOf(folder.filePath("list.dat")),
                 "Sights\xFFTower\xFFhttp://tower.example/a.jpg\r\n");
    }

    void onlyATickedCameraIsSubmitted_data()
    {
        const Rows<bool, QString, bool> row("ticked", "header", "submitted");
        row("not ticked", false, "", false);
        row("ticked", true, "", true);
        row("ticked, with a header", true, "X: 1", false);
    }

    void onlyATickedCameraIsSubmitted()
    {
        QFETCH(bool, ticked);
        QFETCH(QString, header);
        QFETCH(bool, submitted);
        OpenMain m("[DIRECTORY]\r\nHOST=127.0.0.1\r\n");
        QSignalSpy status(&m.part<HTTP>("HTTP1"), &HTTP::Status);
        m.part<QRadioButton>("opt(0)").click();
        m.part<QCheckBox>("chkAdd").setChecked(ticked);
        m.part<QLineEdit>("txtHead").setText(header);
        m.part<QPushButton>("cmdAdd").click();
        QCOMPARE(!status.isEmpty(), submitted);
        if (submitted)
            QCOMPARE(status.first(), QVariantList{"Connecting"});
        m.made().close();
        const QByteArray key =
            "http://" + (header.isEmpty() ? QByteArray() : "\x01" + header.toLatin1());
        QVERIFY(contentOf(m.path("list.dat")).endsWith("\xFFGeneral\xFFNew\xFF" + key + "\r\n"));
    }
};

QTEST_MAIN(SecondaryWindowsTest)
#include "tst_SecondaryWindows.moc"
