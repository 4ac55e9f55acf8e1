// The viewer in its window against a web server as cameras' owners run them.

#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ShownCamera.h"
#include "support/TimeSeam.h"
#include "support/WebServer.h"

#include <QPlainTextEdit>

#include <memory>

namespace {

QStringList newImage(const QString& path, const QString& host = "127.0.0.1")
{
    return {"change http://" + host + path, "done"};
}

} // namespace

class FetchRealServerTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_server = std::make_unique<WebServer>();
        m_server->put("a.jpg", stripedPicture(Qt::red));
        m_server->put("b.jpg", stripedPicture(Qt::green), FirstDate.addDays(1));
        m_server->put("large.jpg", largePicture(100'000));
        m_server->put("secret.jpg", stripedPicture(Qt::black));
        m_server->put("white.gif", smallGif());
        m_server->put("blue.bmp", encodedPicture({8, 8}, Qt::blue, "bmp"));
        m_server->put("words.txt", QByteArray("no picture\n").repeated(500));
        m_camera = std::make_unique<ShownCamera>();
    }

    void cleanup()
    {
        m_camera.reset();
        m_server.reset();
    }

    void anUnchangedFileIsNotSentAgain()
    {
        ShownCamera& c = *m_camera;
        QCOMPARE(c.fetch(m_server->url("/a.jpg")).told, newImage("/a.jpg"));
        QCOMPARE(c.picture(), stripedPicture(Qt::red));
        QVERIFY(c.middle().red() > 240);
        for (int i = 0; i < 3; ++i) {
            const Outcome again = c.fetch();
            QCOMPARE(again.told, QStringList{"error Not a new image"});
            QCOMPARE(again.status, "  Not a new image: Process stopped.");
            QVERIFY(!c.busy());
        }
        QCOMPARE(c.picture(), stripedPicture(Qt::red));
        QCOMPARE(c.trouble(), "");
    }

    void aChangedFileIsANewImage()
    {
        ShownCamera& c = *m_camera;
        c.fetch(m_server->url("/a.jpg"));
        m_server->put("a.jpg", stripedPicture(Qt::blue), FirstDate.addSecs(1));
        QCOMPARE(c.fetch().told, newImage("/a.jpg"));
        QCOMPARE(c.picture(), stripedPicture(Qt::blue));
        QVERIFY(c.middle().blue() > 240);
        // The date of the newest image is the one that counts from now on.
        QCOMPARE(c.fetch().status, "  Not a new image: Process stopped.");
    }

    void aFileThatOnlyGotANewDateIsNoNewImage()
    {
        ShownCamera& c = *m_camera;
        c.fetch(m_server->url("/a.jpg"));
        m_server->put("a.jpg", stripedPicture(Qt::red), FirstDate.addSecs(1));
        const Outcome again = c.fetch();
        QCOMPARE(again.told, QStringList{"done"});
        QCOMPARE(again.status, "  Not a New Image: Process Stopped.");
        QVERIFY(!c.busy());
    }

    void withNewOnlyOffItIsSentAnew()
    {
        ShownCamera& c = *m_camera;
        c.fetch(m_server->url("/a.jpg"));
        c.cam.setNewOnly(false);
        QCOMPARE(c.fetch().told, newImage("/a.jpg"));
        QCOMPARE(c.cam.findChild<QLabel*>("lblPic")->text(), "Image 2");
        c.cam.setNewOnly(true);
        QCOMPARE(c.fetch().status, "  Not a new image: Process stopped.");
    }

    void eachFileHasItsOwnDate()
    {
        ShownCamera& c = *m_camera;
        QCOMPARE(c.fetch(m_server->url("/b.jpg")).told, newImage("/b.jpg"));
        QCOMPARE(c.fetch(m_server->url("/a.jpg")).told, newImage("/a.jpg"));
        QCOMPARE(c.fetch(m_server->url("/b.jpg")).told, QStringList{"error Not a new image"});
    }

    void refusedAnswers_data()
    {
        const Rows<QString> row("path");
        row("404", "/none.jpg");
        row("403", "/secret.jpg");
        row("400", "/a b.jpg");
    }

    void refusedAnswers()
    {
        QFETCH(QString, path);
        ShownCamera& c = *m_camera;
        QCOMPARE(c.trouble(), "");
        const QByteArray before = c.picture();
        const Outcome outcome = c.fetch(m_server->url(path));
        QCOMPARE(outcome.told, QStringList{"error File not found"});
        QCOMPARE(outcome.status, "  Error: File not found.");
        QVERIFY(!c.busy());
        QVERIFY(!c.timer("tmrOut").Enabled());
        QCOMPARE(c.picture(), before);
        QCOMPARE(c.trouble(), "");
    }

    void aRedirectLeadsToItsTarget()
    {
        ShownCamera& c = *m_camera;
        QCOMPARE(c.fetch(m_server->url("/moved.jpg")).told, newImage("/large.jpg"));
        QCOMPARE(c.cam.Url(), m_server->url("/large.jpg"));
        QCOMPARE(c.picture(), largePicture(100'000));
    }

    void aLargeFileEndsWithItsLastByte()
    {
        ShownCamera& c = *m_camera;
        const QByteArray large = largePicture(100'000);
        QTest::mousePress(c.cam.findChild<QWidget*>("lblPic"), Qt::RightButton, Qt::ShiftModifier);
        QSignalSpy silence(&c.timer("tmrOut"), &Timer::Tick);
        for (int i = 0; i < 5; ++i) {
            c.cam.setNewOnly(false);
            const Outcome outcome = c.fetch(m_server->url("/large.jpg"));
            QCOMPARE(outcome.told, newImage("/large.jpg"));
            QCOMPARE(outcome.status, QString("  Getting Image [100% of %1kb]")
                                         .arg(qRound64(double(large.size()) / 1024)));
            QCOMPARE(c.picture(), large);
            // It is not the server's close that has ended it.
            const auto* received = c.cam.findChild<QPlainTextEdit*>("txtDebug");
            QVERIFY(
                received->toPlainText().contains("Connection: keep-alive", Qt::CaseInsensitive));
        }
        QCOMPARE(silence.count(), 0);
        QVERIFY(!c.timer("tmrOut").Enabled());
    }

    void otherFormats_data()
    {
        const Rows<QString, QByteArray> row("name", "bytes");
        row("gif", "white.gif", smallGif());
        row("bmp", "blue.bmp", encodedPicture({8, 8}, Qt::blue, "bmp"));
    }

    /// Small enough to come whole in the first chunk: they end with the silence after it.
    void otherFormats()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        ShownCamera& c = *m_camera;
        c.start(m_server->url("/" + name));
        QTRY_VERIFY(c.status().startsWith("  Getting Image [100% of "));
        QVERIFY(c.busy());
        QCOMPARE(c.told(), QStringList{});
        c.timer("tmrOut").elapse();
        QCOMPARE(c.end().told, newImage("/" + name));
        QCOMPARE(c.picture(), bytes);
        QVERIFY(QFileInfo::exists(c.folder() + "/tt" + name.right(4)));
    }

    void aTextFileIsNoPicture()
    {
        ShownCamera& c = *m_camera;
        c.fetch(m_server->url("/a.jpg"));
        const Outcome outcome = c.fetch(m_server->url("/words.txt"));
        QCOMPARE(outcome.told, QStringList{"error Not a picture"});
        QCOMPARE(outcome.status, "  Error: Not a picture.");
        QCOMPARE(c.picture(), stripedPicture(Qt::red));
        // The previous body and its date stay as well.
        QCOMPARE(c.fetch(m_server->url("/a.jpg")).told, QStringList{"error Not a new image"});
        QCOMPARE(c.trouble(), "");
    }

    void anIpv6AddressInBrackets()
    {
        ShownCamera& c = *m_camera;
        QCOMPARE(c.fetch(m_server->url("/a.jpg", "[::1]")).told, newImage("/a.jpg", "[::1]"));
        QCOMPARE(c.picture(), stripedPicture(Qt::red));
        QCOMPARE(c.fetch().status, "  Not a new image: Process stopped.");
    }

    void aServerThatIsGoneIsASocketError()
    {
        ShownCamera& c = *m_camera;
        c.fetch(m_server->url("/a.jpg"));
        m_server->stop();
        const Outcome outcome = c.fetch();
        QCOMPARE(outcome.told, QStringList{"error Connection refused"});
        QCOMPARE(outcome.status, "  Connection refused");
        QVERIFY(!c.timer("tmrOut").Enabled());
        QVERIFY(c.busy()); // so that the text stays
        QCOMPARE(c.picture(), stripedPicture(Qt::red));
        QCOMPARE(c.trouble(), "");
    }

private:
    std::unique_ptr<WebServer> m_server;
    std::unique_ptr<ShownCamera> m_camera;
};

QTEST_MAIN(FetchRealServerTest)
#include "tst_FetchRealServer.moc"
