// The viewer in its window, and the whole program, against a web server that speaks TLS.

#include "cameras/CameraKey.h"
#include "display/ImageView.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/ShownMain.h"
#include "support/TestAuthority.h"
#include "support/TimeSeam.h"
#include "support/WebServer.h"
#include "viewer/history/History.h"
#include "viewer/surface/ToolBar.h"

#include <QComboBox>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

static QStringList newImage(const QString& address)
{
    return {"change " + address, "done"};
}

static const QStringList NotNew{"error Not a new image"};

class FetchTlsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        m_certificate = m_authority.certificateFile();
        m_authority.makeTheOnlyOneTrusted();
    }

    void init()
    {
        m_server = std::make_unique<WebServer>(m_certificate);
        m_server->put("a.jpg", stripedPicture(Qt::red));
        m_server->put("large.jpg", largePicture(500'000));
        m_camera = std::make_unique<ShownCamera>();
    }

    void cleanup()
    {
        m_camera.reset();
        m_server.reset();
    }

    void aPictureComesOverTls_data()
    {
        const Rows<QString> row("host");
        row("name", "localhost");
        row("address", "127.0.0.1");
        row("IPv6", "[::1]");
    }

    void aPictureComesOverTls()
    {
        QFETCH(QString, host);
        ShownCamera& c = *m_camera;
        const QString url = m_server->url("/a.jpg", host);
        QVERIFY(url.startsWith("https://"));
        c.start(url);
        QCOMPARE(c.status(), "  Connecting to " + url.left(url.lastIndexOf('/')));
        QCOMPARE(c.end().told, newImage(url));
        QCOMPARE(c.picture(), stripedPicture(Qt::red));
        QVERIFY(c.middle().red() > 240);
        QCOMPARE(c.cam.Url(), url);
        QCOMPARE(firstField(c, 1), url);
        QVERIFY(!c.busy());
        // A plain camera is shown as before.
        QCOMPARE(c.trouble(), "");
    }

    void anUnchangedFileIsNotSentAgain()
    {
        ShownCamera& c = *m_camera;
        c.fetch(m_server->url("/a.jpg"));
        const Outcome again = c.fetch();
        QCOMPARE(again.told, NotNew);
        QCOMPARE(again.status, "  Not a new image: Process stopped.");
        m_server->put("a.jpg", stripedPicture(Qt::blue), FirstDate.addSecs(1));
        QCOMPARE(c.fetch().told, newImage(m_server->url("/a.jpg")));
        QCOMPARE(c.picture(), stripedPicture(Qt::blue));
    }

    void theSchemeMayBeWrittenInCapitals()
    {
        ShownCamera& c = *m_camera;
        const QString url = m_server->url("/a.jpg");
        const QString capitals = "HTTPS" + url.mid(5);
        c.cam.setUrl(capitals);
        QCOMPARE(c.cam.Url(), capitals);
        QCOMPARE(c.fetch().told, newImage(url));
        QCOMPARE(firstField(c, 1), url);
        // It is one camera, however it is written.
        QCOMPARE(c.fetch(url).told, NotNew);
        QCOMPARE(c.fetch(capitals).told, NotNew);
    }

    void camerasOnTwoPortsAreTwoCameras()
    {
        ShownCamera& c = *m_camera;
        WebServer second(m_certificate);
        second.put("a.jpg", stripedPicture(Qt::green));
        QCOMPARE(c.fetch(m_server->url("/a.jpg")).told, newImage(m_server->url("/a.jpg")));
        // The first one's date is not asked of the second.
        QCOMPARE(c.fetch(second.url("/a.jpg")).told, newImage(second.url("/a.jpg")));
        QCOMPARE(c.picture(), stripedPicture(Qt::green));
        QCOMPARE(c.fetch(m_server->url("/a.jpg")).told, NotNew);
    }

    void plainAndSecureAreTwoCameras()
    {
        ShownCamera& c = *m_camera;
        WebServer plain;
        plain.put("a.jpg", stripedPicture(Qt::green));
        c.fetch(m_server->url("/a.jpg"));
        QCOMPARE(c.fetch(plain.url("/a.jpg")).told, newImage("http://127.0.0.1/a.jpg"));
        QCOMPARE(firstField(c, 2), "127.0.0.1/a.jpg");
        QCOMPARE(c.fetch(m_server->url("/a.jpg")).told, NotNew);
    }

    void theWholeFirstFieldOfItsKeyFetchesItAgain()
    {
        ShownCamera& c = *m_camera;
        c.fetch(m_server->url("/a.jpg"));
        c.cam.setUrl(firstField(c, 1));
        c.cam.setNewOnly(false);
        QCOMPARE(c.fetch().told, newImage(m_server->url("/a.jpg")));
        QCOMPARE(c.picture(), stripedPicture(Qt::red));
    }

    void aLargeFileEndsWithItsLastByte()
    {
        ShownCamera& c = *m_camera;
        QSignalSpy silence(&c.timer("tmrOut"), &Timer::Tick);
        c.cam.setNewOnly(false);
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(c.fetch(m_server->url("/large.jpg")).told,
                     newImage(m_server->url("/large.jpg")));
            QVERIFY(c.picture() == largePicture(500'000));
        }
        QCOMPARE(silence.count(), 0);
    }

    void theExtraHeaderGoesOutEncrypted()
    {
        ScriptedServer server(TestAuthority::server(m_certificate));
        server.listen();
        server.play(pictureAnswer(stripedPicture(Qt::red)));
        ShownCamera& c = *m_camera;
        const QString key = server.url("/a.jpg") + HeaderMark + "Cookie: secret";
        QCOMPARE(c.fetch(key).told, newImage(server.url("/a.jpg")));
        QCOMPARE(c.cam.Url(), key);
        QCOMPARE(server.requests().size(), 1);
        QVERIFY(server.requests()[0].startsWith("GET /a.jpg HTTP/1.0\r\n"));
        // The name of the host alone, as for a plain camera.
        QVERIFY(server.requests()[0].contains("\r\nHost: 127.0.0.1\r\n"));
        QVERIFY(server.requests()[0].endsWith("\r\nCookie: secret\r\n\r\n"));
    }

    void redirects_data()
    {
        const Rows<bool, bool, bool> row("fromSecure", "toSecure", "capitals");
        row("secure to secure", true, true, false);
        row("plain to secure", false, true, false);
        row("plain to secure in capitals", false, true, true);
        row("secure to plain", true, false, false);
        row("plain to plain", false, false, false);
    }

    void redirects()
    {
        QFETCH(bool, fromSecure);
        QFETCH(bool, toSecure);
        QFETCH(bool, capitals);
        ShownCamera& c = *m_camera;
        WebServer target(toSecure ? m_certificate : QString());
        target.put("b.jpg", stripedPicture(Qt::blue));
        const QString url = target.url("/b.jpg");
        const QString written = capitals ? "HTTPS" + url.mid(5) : url;
        const WebServer first(fromSecure ? m_certificate : QString(), webAddressOf(written));
        QSignalSpy changes(&c.cam, &WebCam::UrlChanged);

        QCOMPARE(c.fetch(first.url("/moved.jpg") + HeaderMark + "Cookie: a").told,
                 newImage(toSecure ? url : "http://127.0.0.1/b.jpg"));
        QCOMPARE(c.cam.Url(), written);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(c.picture(), stripedPicture(Qt::blue));
        QCOMPARE(c.fetch().told, NotNew);
    }

    void aRedirectToABadCertificateIsAnError()
    {
        ShownCamera& c = *m_camera;
        WebServer bad(m_other.certificateFile());
        bad.put("b.jpg", stripedPicture(Qt::blue));
        const WebServer first({}, bad.url("/b.jpg"));
        const Outcome outcome = c.fetch(first.url("/moved.jpg"));
        QCOMPARE(outcome.told.size(), 1);
        QVERIFY2(outcome.told[0].startsWith("error The issuer certificate "),
                 qPrintable(outcome.told[0]));
        QCOMPARE(c.cam.Url(), bad.url("/b.jpg"));
        QCOMPARE(c.trouble(), "");
    }

    void aBadCertificateIsAnErrorWithItsReason_data() { m_authority.addBadCertificates(m_other); }

    void aBadCertificateIsAnErrorWithItsReason()
    {
        QFETCH(QString, file);
        QFETCH(QString, reason);
        ShownCamera& c = *m_camera;
        QCOMPARE(c.trouble(), "");
        const QByteArray before = c.picture();
        WebServer bad(file);
        bad.put("a.jpg", stripedPicture(Qt::red));
        const Outcome outcome = c.fetch(bad.url("/a.jpg"));
        QCOMPARE(outcome.told, QStringList{"error " + reason});
        QCOMPARE(outcome.status, "  " + reason);
        QVERIFY(!c.timer("tmrOut").Enabled());
        QCOMPARE(c.picture(), before);
        QCOMPARE(c.fetch(m_server->url("/a.jpg")).told, newImage(m_server->url("/a.jpg")));
        QCOMPARE(c.trouble(), "");
    }

    void stopDuringTheHandshake()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        ShownCamera& c = *m_camera;
        c.start(QString("https://127.0.0.1:%1/a.jpg").arg(silent.serverPort()));
        QTRY_VERIFY(silent.hasPendingConnections());
        auto* socket = silent.nextPendingConnection();
        QTRY_VERIFY(socket->bytesAvailable() > 0);
        QVERIFY(c.busy());
        c.press(ToolBar::Stop);
        QCOMPARE(c.told(), QStringList{"done"});
        QCOMPARE(c.status(), "  Stopped");
        QVERIFY(!c.busy());
        QTRY_COMPARE(socket->state(), QAbstractSocket::UnconnectedState);
        QCOMPARE(c.fetch(m_server->url("/a.jpg")).told, newImage(m_server->url("/a.jpg")));
        QCOMPARE(c.trouble(), "");
    }

    void aHandshakeThatNeverEndsIsGivenUp()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        ShownCamera& c = *m_camera;
        Timer& patience = c.timer("tmrNoAnswer");
        c.start(QString("https://127.0.0.1:%1/a.jpg").arg(silent.serverPort()));
        QVERIFY(!patience.Enabled()); // connecting has no limit of ours
        QTRY_VERIFY(silent.hasPendingConnections());
        auto* socket = silent.nextPendingConnection();
        QTRY_VERIFY(patience.Enabled());
        patience.elapse();
        QCOMPARE(c.told(), QStringList{"error The server does not answer."});
        QCOMPARE(c.status(), "  The server does not answer.");
        QTRY_COMPARE(socket->state(), QAbstractSocket::UnconnectedState);
        QVERIFY(!patience.Enabled());
        QCOMPARE(c.fetch(m_server->url("/a.jpg")).told, newImage(m_server->url("/a.jpg")));
        QCOMPARE(c.trouble(), "");
    }

    void anAddressWithoutAHostIsToldAtOnce()
    {
        ShownCamera& c = *m_camera;
        for (const char* url : {"https://", "https:///a.jpg", "HTTPS://:8443/a.jpg"}) {
            c.start(url);
            QCOMPARE(c.status(), "  The address names no host.");
            QVERIFY(!c.busy());
        }
        c.start("https://127.0.0.1:port/a.jpg");
        QCOMPARE(c.status(), "  The port must be a number from 1 to 65535.");
        QCOMPARE(c.told(), QStringList{});
    }

    void aPlainAddressIsAskedInPlainText()
    {
        ShownCamera& c = *m_camera;
        c.fetch(m_server->url("/a.jpg"));
        ScriptedServer plain;
        plain.listen();
        plain.play(pictureAnswer(stripedPicture(Qt::green)));
        QCOMPARE(c.fetch(plain.url("/a.jpg")).told, newImage("http://127.0.0.1/a.jpg"));
        QVERIFY(plain.requests()[0].startsWith("GET /a.jpg HTTP/1.0\r\n"));
        // A server that speaks TLS only answers a plain request with its alert.
        const QString bare = m_server->url("/a.jpg").mid(8);
        const Outcome outcome = c.fetch(bare);
        QCOMPARE(outcome.told, QStringList{"error Not a picture"});
        QCOMPARE(c.cam.Url(), bare);
    }

    void theGotoBarShowsAndTakesSecureAddresses()
    {
        ShownMain m;
        m.shown();
        auto& bar = m.part<QComboBox>("cmbUrl");
        auto& cam = m.part<WebCam>("Cam");
        QSignalSpy changes(&cam, &WebCam::ImageChange);
        const QString url = m_server->url("/a.jpg");
        QTest::keyClicks(&bar, "HTTPS" + url.mid(5));
        QTest::keyClick(&bar, Qt::Key_Return);
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(bar.currentText(), url);
        QCOMPARE(m.part<ImageView>("imgMain").Picture().bytes(), stripedPicture(Qt::red));
    }

    void aSecureFavourite()
    {
        ShownMain m;
        const QString url = m_server->url("/a.jpg");
        m.write("pref.ini",
                "[FAVORITES]\r\nNAME[0]=One\r\nURL[0]=" + url.toLatin1() + "\r\nCOUNT=1\r\n");
        m.shown();
        QSignalSpy changes(&m.part<WebCam>("Cam"), &WebCam::ImageChange);
        m.entry("mnuFavGo(0)").trigger();
        QCOMPARE(m.part<QComboBox>("cmbUrl").currentText(), url);
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(m.part<WebCam>("Cam").Url(), url);
    }

private:
    /// The address in the key of a history entry.
    QString firstField(ShownCamera& c, int entry) const
    {
        const QString key = c.cam.findChild<History*>()->ilHis().Key(entry);
        return key.left(key.indexOf(FieldSeparator));
    }

    TestAuthority m_authority;
    TestAuthority m_other{"Somebody else"};
    QString m_certificate;
    std::unique_ptr<WebServer> m_server;
    std::unique_ptr<ShownCamera> m_camera;
};

QTEST_MAIN(FetchTlsTest)
#include "tst_FetchTls.moc"
