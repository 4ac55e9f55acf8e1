// The goto bar in the main window stands for the camera on show: with its port, without its extra
// header, and with its whole key behind the text.

#include "directory/frmInt.h"
#include "network/TcpClient.h"
#include "shell/parts/GotoBar.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"

#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTreeView>

#include <functional>

namespace {

/// The main window with a camera of its own to watch, whose each answer is a new picture.
class Addressed : public ShownMain
{
public:
    Addressed()
    {
        server.listen();
        for (int number = 0; number < 5; ++number)
            server.play(
                pictureAnswer(encodedPicture({8, 8}, QColor::fromHsv(number * 60, 255, 255))));
    }

    GotoBar& bar() { return part<GotoBar>("cmbUrl"); }
    WebCam& cam() { return part<WebCam>("Cam"); }
    QString address(const QString& path = "/a.jpg") const { return "http://" + server.url(path); }

    /// Replaces what the bar holds by typing, and confirms it.
    void typeAndEnter(const QString& text)
    {
        bar().lineEdit()->selectAll();
        QTest::keyClicks(&bar(), text);
        enter();
    }
    void pasteAndEnter(const QString& text)
    {
        QGuiApplication::clipboard()->setText(text);
        bar().lineEdit()->selectAll();
        QTest::keySequence(&bar(), QKeySequence::Paste);
        enter();
    }
    void enter() { QTest::keyClick(&bar(), Qt::Key_Return); }
    void press(int button)
    {
        // On its face, left of its arrow.
        QTest::mouseClick(&part<QWidget>(QString("button(%1)").arg(button)), Qt::LeftButton, {},
                          {12, 14});
    }
    /// Lets `act` bring a picture, and gives what ImageChange tells of it.
    QString change(const std::function<void()>& act)
    {
        QSignalSpy changes(&cam(), &WebCam::ImageChange);
        QSignalSpy done(&cam(), &WebCam::Done);
        act();
        return waitFor([&] { return done.count() > 0 && changes.count() > 0; })
                   ? changes[0].value(1).toString()
                   : "(none)";
    }

    ScriptedServer server;
};

const QString Header = "\1Cookie: a=b";

} // namespace

class frmMainAddressTest : public QObject
{
    Q_OBJECT
private slots:
    void howeverItWasChosenEnterRefreshesThatCamera_data()
    {
        const Rows<QString> row("by");
        row("a click in the list", "list");
        row("a favourite", "favourite");
        row("a preview", "preview");
        row("its name", "name");
        row("its key, pasted", "key");
    }

    void howeverItWasChosenEnterRefreshesThatCamera()
    {
        QFETCH(QString, by);
        Addressed m;
        const QString key = m.server.url() + Header;
        m.write("pref.ini",
                "[FAVORITES]\r\nNAME[0]=One\r\nURL[0]=" + key.toLatin1() + "\r\nCOUNT=1\r\n");
        m.write("list.dat", "Sights\xFFTower\xFF" + key.toLatin1() + "\r\n");
        m.shown();
        QTest::keyClicks(&m.bar(), "half an addr");
        const QHash<QString, std::function<void()>> ways = {
            {"list",
             [&] {
                 auto& tree = m.part<QTreeView>("tvwCat");
                 const auto category = tree.model()->index(0, 0);
                 const auto place = tree.visualRect(tree.model()->index(0, 0, category));
                 QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, place.center());
             }},
            {"favourite", [&] { m.entry("mnuFavGo(0)").trigger(); }},
            {"preview",
             [&] {
                 m.entry("mnuOptInt").trigger();
                 for (QWidget* window : QApplication::topLevelWidgets()) {
                     if (auto* list = qobject_cast<frmInt*>(window)) {
                         emit list->Preview(key);
                         list->close();
                     }
                 }
             }},
            {"name", [&] { m.typeAndEnter("Tower"); }},
            {"key", [&] { m.pasteAndEnter(key); }},
        };
        const QString told = m.change([&] {
            ways[by]();
            // At once, not only with the picture; a name stays until then.
            if (by != "name" && by != "key")
                QCOMPARE(m.bar().currentText(), m.address());
        });
        QCOMPARE(told, "http://127.0.0.1/a.jpg");
        QCOMPARE(m.bar().currentText(), m.address());
        QCOMPARE(m.cam().Url(), key);

        QCOMPARE(m.change([&] { m.enter(); }), "http://127.0.0.1/a.jpg");
        QCOMPARE(m.server.requests().size(), 2);
        QVERIFY(m.server.requests()[1].startsWith("GET /a.jpg HTTP/1."));
        QVERIFY(m.server.requests()[1].contains("\r\nCookie: a=b\r\n"));
        QCOMPARE(m.bar().currentText(), m.address());
        QCOMPARE(m.cam().Url(), key);
    }

    void steppingBackBringsThatCamera()
    {
        Addressed m;
        ScriptedServer other;
        other.listen();
        other.play(pictureAnswer(encodedPicture({8, 8}, Qt::gray)));
        m.shown();
        m.change([&] { m.typeAndEnter("me:secret@" + m.server.url()); });
        m.change([&] { m.typeAndEnter(other.url("/b.jpg")); });
        QCOMPARE(m.bar().currentText(), "http://" + other.url("/b.jpg"));
        m.press(ToolBar::Back);
        QCOMPARE(m.bar().currentText(), m.address());
        QCOMPARE(m.cam().Url(), "127.0.0.1/a.jpg");
        m.change([&] { m.enter(); });
        QCOMPARE(m.server.requests().size(), 2);
        QVERIFY(m.server.requests()[1].contains("\r\nAuthorization: Basic bWU6c2VjcmV0\r\n"));
        QCOMPARE(m.bar().currentText(), m.address());
    }

    void anAddressTypedWithoutThePortIsAnotherCamera()
    {
        Addressed m;
        m.shown();
        m.change([&] { m.typeAndEnter(m.server.url()); });
        m.change([&] { m.typeAndEnter(m.server.url("/b.jpg")); });
        m.press(ToolBar::Back);
        QCOMPARE(m.cam().Url(), "127.0.0.1/a.jpg");
        m.typeAndEnter("127.0.0.1/a.jpg");
        QCOMPARE(m.part<TcpClient>("sckMain").RemotePort(), 80);
    }

    void aRedirectLeavesTheCamera()
    {
        Addressed m;
        ScriptedServer first;
        first.listen();
        first.play("HTTP/1.0 302 Found\r\nLocation: " + m.address().toLatin1() + "\r\n\r\n");
        m.shown();
        m.change([&] { m.pasteAndEnter(first.url() + Header); });
        QCOMPARE(m.bar().currentText(), "http://" + first.url());
        m.change([&] { m.enter(); });
        QCOMPARE(first.requests().size(), 2);
        QVERIFY(first.requests()[1].contains("Cookie"));
        QCOMPARE(m.server.requests().size(), 2);
        QVERIFY(!m.server.requests()[1].contains("Cookie"));
    }

    void anOpenedFileHasNoCamera()
    {
        Addressed m;
        m.write("one.bmp", encodedPicture({8, 8}, Qt::gray, "bmp"));
        m.shown();
        m.change([&] { m.typeAndEnter(m.server.url()); });
        m.press(ToolBar::Open);
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(m.path("one.bmp"));
        static_cast<QDialog*>(dialog)->accept();
        QTRY_COMPARE(m.part<QLabel>("lblPic").text(), "Image 2");
        QCOMPARE(m.bar().currentText(), m.address());
        m.press(ToolBar::Back);
        m.press(ToolBar::Forward);
        QCOMPARE(m.bar().currentText(), "http://");
        m.press(ToolBar::Back);
        QCOMPARE(m.bar().currentText(), m.address());
    }

    void onlyWhatGoesOutIsEncoded()
    {
        Addressed m;
        m.shown();
        const QString path = "/ein B\u00fcro.jpg?zeit=8 Uhr#oben";
        QCOMPARE(m.change([&] { m.pasteAndEnter(m.server.url(path)); }), "http://127.0.0.1" + path);
        QVERIFY(m.server.requests()[0].startsWith(
            "GET /ein%20B%C3%BCro.jpg?zeit=8%20Uhr HTTP/1.0\r\n"));
        QCOMPARE(m.cam().Url(), m.server.url(path));
        QCOMPARE(m.bar().currentText(), m.address(path));
        // And so it is when it is asked for again.
        m.change([&] { m.enter(); });
        const auto line = [&](int n) { return m.server.requests()[n].split('\r')[0]; };
        QCOMPARE(line(1), line(0));
    }

    void aPasswordLeavesTheAddress()
    {
        Addressed m;
        m.shown();
        m.change([&] { m.typeAndEnter("http://http://me:secret@" + m.server.url() + "  "); });
        QVERIFY(m.server.requests()[0].contains("\r\nAuthorization: Basic bWU6c2VjcmV0\r\n"));
        QCOMPARE(m.cam().Url(), m.server.url() + "\1Authorization: Basic bWU6c2VjcmV0");
        QCOMPARE(m.bar().currentText(), m.address());
        QCOMPARE(m.bar().itemText(0), m.address());
    }

    void anotherSchemeFetchesNothing()
    {
        Addressed m;
        m.shown();
        m.change([&] { m.typeAndEnter(m.server.url()); });
        m.typeAndEnter("rtsp://" + m.server.url());
        const auto message = answerMessage(QMessageBox::Ok);
        QCOMPARE(message.title, "Pevora");
        QCOMPARE(message.text, "Only http:// and https:// addresses can be shown.");
        QCOMPARE(m.cam().Url(), m.server.url());
        QCOMPARE(m.part<TcpClient>("sckMain").RemotePort(), m.server.port());
        QCOMPARE(m.server.connections(), 1);
    }

    void aClickIntoTheBarSelectsAll()
    {
        Addressed m;
        m.shown();
        m.change([&] { m.typeAndEnter(m.server.url()); });
        m.cam().setFocus();
        QTest::mouseClick(m.bar().lineEdit(), Qt::LeftButton);
        QTRY_COMPARE(m.bar().lineEdit()->selectedText(), m.address());
        QTest::keyClicks(&m.bar(), "next");
        QTest::keyClick(&m.bar(), Qt::Key_Escape);
        QCOMPARE(m.bar().currentText(), m.address());
    }
};

QTEST_MAIN(frmMainAddressTest)
#include "tst_frmMainAddress.moc"
