// Servers that never come to an end, in size or in time: the window answers meanwhile, memory is
// bounded, and Stop ends it.

#include "support/ChildCost.h"
#include "support/Cost.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/TimeSeam.h"
#include "viewer/fetch/Fetch.h"
#include "viewer/surface/ToolBar.h"

#include <QPlainTextEdit>
#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>
#include <ctime>

using End = Script::End;

namespace {

const QString NotPicture = "  Error: Not a picture.";
const QStringList NotPictureTold{"error Not a picture"};
constexpr qint64 MiB = 1024 * 1024;

/// Sends a header and then body for ever.
class EndlessServer
{
public:
    explicit EndlessServer(const QByteArray& header)
    {
        if (!m_server.listen(QHostAddress::LocalHost))
            qFatal("cannot listen");
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this, header] {
            auto* socket = m_server.nextPendingConnection();
            connected = true;
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, header] {
                socket->readAll();
                socket->write(header);
                sendMore(socket);
            });
            QObject::connect(socket, &QTcpSocket::bytesWritten, socket, [this, socket](qint64 n) {
                sent += n;
                sendMore(socket);
            });
            QObject::connect(socket, &QTcpSocket::disconnected, socket,
                             [this] { connected = false; });
        });
    }
    QString url() const { return QString("127.0.0.1:%1/a.jpg").arg(m_server.serverPort()); }

    qint64 sent = 0;
    bool connected = false;

private:
    void sendMore(QTcpSocket* socket) const
    {
        if (socket->bytesToWrite() < m_part.size())
            socket->write(m_part);
    }

    QTcpServer m_server;
    const QByteArray m_part = QByteArray(64 * 1024, 'x');
};

/// Ticks as long as the window answers, and notes the most work between two ticks.
class Heartbeat : public QObject
{
public:
    Heartbeat()
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            ++beats;
            const std::clock_t now = std::clock();
            longestGap = std::max(longestGap, double(now - m_last) / CLOCKS_PER_SEC);
            m_last = now;
        });
        m_timer.start(1);
    }

    int beats = 0;
    double longestGap = 0; ///< In seconds of processor time.

private:
    QTimer m_timer;
    std::clock_t m_last = std::clock();
};

/// As much work as a few large pictures mean, which may come at any time.
double longestGap()
{
    static const double gap = 5 * costOf(decodeTwelveMegapixels);
    return gap;
}

} // namespace

class FetchFloodsTest : public QObject
{
    Q_OBJECT
private slots:
    void anEndlessBodyEndsAt64MiB_data()
    {
        const Rows<QByteArray> row("header");
        const QByteArray typed = "HTTP/1.0 200 OK\r\nContent-Type: image/jpeg\r\n";
        row("no length", typed + "\r\n");
        row("length", typed + "Content-Length: 2147483647\r\n\r\n");
        row("no header end", "HTTP/1.0 200 OK\r\n");
    }

    void anEndlessBodyEndsAt64MiB()
    {
        QFETCH(QByteArray, header);
        ShownCamera c;
        QCOMPARE(c.trouble(), "");
        const QByteArray before = c.picture();
        EndlessServer server(header);
        Heartbeat heart;
        const Outcome outcome = c.fetch(server.url());
        QCOMPARE(outcome.told, NotPictureTold);
        QCOMPARE(outcome.status, NotPicture);
        QVERIFY(!c.busy());
        QTRY_VERIFY(!server.connected);
        QVERIFY(server.sent >= 64 * MiB);
        QVERIFY2(server.sent < 96 * MiB, QByteArray::number(server.sent));
        QVERIFY2(heart.longestGap < longestGap(), QByteArray::number(heart.longestGap));
        QCOMPARE(c.picture(), before);
        QCOMPARE(c.trouble(), "");
    }

    void anEndlessBodyCostsBoundedMemory()
    {
        const ChildCost cost = costOfChild({"anEndlessBodyEndsAt64MiB:no length"});
        qInfo("%4.2f s, %3.0f MB", cost.seconds, cost.peakMegabytes);
        QCOMPARE(cost.exitCode, 0);
#ifndef __SANITIZE_ADDRESS__ // It needs memory of its own.
        QVERIFY(cost.peakMegabytes < 400);
#endif
    }

    void tenMegabytesOfHeaderAreNoPicture_data()
    {
        const Rows<QByteArray> row("answer");
        const QByteArray lines = QByteArray("X-Filler: 0123456789\r\n").repeated(10'000'000 / 22);
        const QByteArray type = "Content-Type: image/jpeg\r\n";
        const QByteArray picture = encodedPicture({40, 30}, Qt::red);
        row("no type", httpAnswer(picture, lines));
        row("type first", httpAnswer(picture, type + lines));
        row("type last", httpAnswer(picture, lines + type));
        row("no end", ("HTTP/1.0 200 OK\r\n" + type + lines));
        row("one line", httpAnswer(picture, type + "X: " + QByteArray(10'000'000, 'x')));
        row("no line at all", QByteArray(10'000'000, 'x'));
    }

    void tenMegabytesOfHeaderAreNoPicture()
    {
        QFETCH(QByteArray, answer);
        ShownCamera c;
        ScriptedServer server;
        server.listen();
        server.play(answer);
        Heartbeat heart;
        QCOMPARE(c.fetch(server.url()).told, NotPictureTold);
        QCOMPARE(c.status(), NotPicture);
        QVERIFY2(heart.longestGap < longestGap(), QByteArray::number(heart.longestGap));
        QTRY_COMPARE(server.openConnections(), 0);
        QCOMPARE(c.trouble(), "");
    }

    void theDebugBoxKeepsTheEndOfAFlood()
    {
        ShownCamera c;
        QTest::mousePress(c.cam.findChild<QWidget*>("lblPic"), Qt::RightButton, Qt::ShiftModifier);
        const auto& box = *c.cam.findChild<QPlainTextEdit*>("txtDebug");
        QVERIFY(box.isVisible());
        ScriptedServer server;
        server.listen();
        server.play(QByteArray("X-Filler: 0123456789\r\n").repeated(50'000) + "the end");
        QCOMPARE(c.fetch(server.url()).told, NotPictureTold);
        QVERIFY(box.blockCount() <= 5'000);
        QVERIFY(box.toPlainText().endsWith("X-Filler: 0123456789\nthe end"));
        QTest::mousePress(c.cam.findChild<QWidget*>("lblPic"), Qt::RightButton, Qt::ShiftModifier);
        QCOMPARE(c.trouble(), "");
    }

    void aRedirectToItselfEnds()
    {
        ShownCamera c;
        ScriptedServer server;
        server.listen();
        server.play(
            httpAnswer({}, "Location: http://" + server.url().toLatin1() + "\r\n", "302 Found"));
        Heartbeat heart;
        QCOMPARE(c.fetch(server.url()).told, QStringList{"error File not found"});
        QVERIFY2(heart.longestGap < longestGap(), QByteArray::number(heart.longestGap));
        QCOMPARE(c.status(), "  Error: File not found.");
        QVERIFY(!c.busy());
        QTRY_COMPARE(server.openConnections(), 0);
        QCOMPARE(server.connections(), 20);
        QCOMPARE(c.trouble(), "");
    }

    void aByteEveryNineSecondsGoesOnUntilStop()
    {
        const QByteArray body = largePicture(3'000);
        const QByteArray answer = pictureAnswer(body);
        const auto first = answer.size() - body.size();
        ShownCamera c;
        ScriptedServer server;
        server.listen();
        server.play(answer.left(first), End::KeepOpen);
        Timer& tmrOut = c.timer("tmrOut");
        QCOMPARE(tmrOut.Interval(), 10'000);
        QSignalSpy silence(&tmrOut, &Timer::Tick);
        c.start(server.url());
        QTRY_VERIFY(tmrOut.Enabled());
        const QFileInfo file(c.folder() + "/tt.jpg");
        for (int byte = 0; byte < 20; ++byte) {
            // Off, as if nine seconds had not begun: only the byte switches it on again.
            tmrOut.setEnabled(false);
            server.sendMore(body.mid(byte, 1));
            QTRY_VERIFY(tmrOut.Enabled());
            QVERIFY(c.told().isEmpty());
            QVERIFY(c.busy());
        }
        QCOMPARE(silence.count(), 0);
        c.press(ToolBar::Stop);
        QCOMPARE(c.told(), QStringList{"done"});
        QCOMPARE(c.status(), "  Stopped");
        QVERIFY(!tmrOut.Enabled());
        QTRY_COMPARE(server.openConnections(), 0);
        QCOMPARE(c.trouble(), "");
    }

    void eachChunkStartsTheTimeOutAnew()
    {
        const QByteArray body = largePicture(3'000);
        const QByteArray answer = pictureAnswer(body);
        ShownCamera c;
        Timer& tmrOut = c.timer("tmrOut");
        QStringList order;
        // Where a busy machine lets the chunk come too late, that proves nothing: then once more.
        for (int timeOutMs = 200; order.value(0) != "chunk"; timeOutMs *= 2) {
            QVERIFY(timeOutMs < HangMs);
            ScriptedServer server;
            server.listen();
            server.play(answer.chopped(body.size()), End::KeepOpen);
            tmrOut.setInterval(timeOutMs);
            c.start(server.url());
            QTRY_VERIFY(tmrOut.Enabled());

            // Both run as long from now, this one first; the one that the chunk starts anew is
            // last.
            order.clear();
            tmrOut.restart();
            QTimer other;
            other.setSingleShot(true);
            other.start(timeOutMs);
            connect(&other, &QTimer::timeout, &other, [&] { order << "other"; });
            connect(&tmrOut, &Timer::Tick, &other, [&] { order << "silence"; });
            connect(c.cam.findChild<Fetch*>(), &Fetch::ChunkReceived, &other,
                    [&] { order << "chunk"; });
            server.sendMore(body.left(1));
            QTRY_COMPARE(c.told(), NotPictureTold);
        }
        QCOMPARE(order, (QStringList{"chunk", "other", "silence"}));
        QCOMPARE(c.trouble(), "");
    }

    void aHeaderWithoutEndWaitsTenSeconds()
    {
        ShownCamera c;
        ScriptedServer server;
        server.listen();
        server.play("HTTP/1.0 200 OK\r\nContent-Type: image/jpeg\r\n", End::KeepOpen);
        Timer& tmrHeader = c.timer("tmrHeader");
        c.start(server.url());
        QTRY_VERIFY(tmrHeader.Enabled());
        QVERIFY(c.busy());
        tmrHeader.elapse();
        QTRY_VERIFY(c.timer("tmrOut").Enabled());
        QCOMPARE(c.told(), QStringList{});
        // What comes from now on is the body, also where it reads as a header line.
        server.sendMore("X: " + QByteArray(3'000, 'y') + "\r\n");
        QTRY_COMPARE(c.status(), "  Getting Image [ 3kb ]");
        c.timer("tmrOut").elapse();
        QCOMPARE(c.end().told, NotPictureTold);

        // The same once more, ended by the person.
        c.start(server.url());
        QTRY_VERIFY(tmrHeader.Enabled());
        c.press(ToolBar::Stop);
        QVERIFY(!tmrHeader.Enabled());
        QCOMPARE(c.status(), "  Stopped");
        QCOMPARE(c.trouble(), "");
    }
};

QTEST_MAIN(FetchFloodsTest)
#include "tst_FetchFloods.moc"
