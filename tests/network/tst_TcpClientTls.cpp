// Secure connections to servers with good certificates, and to some that are no such servers.

#include "network/TcpClient.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/SecureClient.h"
#include "support/TestAuthority.h"

#include <functional>
#include <sys/socket.h>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray Answer = "HTTP/1.0 200 OK\r\n\r\n" + QByteArray(5000, 'b');
/// The first byte of all that TLS sends while it greets.
constexpr char Handshake = 0x16;

/// A server that speaks no TLS: what it does is said by `onData`, called with all that a client has
/// sent so far, as soon as it has sent something.
class RawServer : public QTcpServer
{
public:
    explicit RawServer(std::function<void(QTcpSocket&)> onData)
    {
        if (!listen(QHostAddress::LocalHost))
            qFatal("cannot listen");
        connect(this, &QTcpServer::newConnection, this, [this, onData] {
            auto* socket = nextPendingConnection();
            ++connections;
            connect(socket, &QTcpSocket::disconnected, this, [this] { ++ended; });
            connect(socket, &QTcpSocket::readyRead, this, [this, socket, onData] {
                received += socket->readAll();
                onData(*socket);
            });
        });
    }

    QByteArray received;
    int connections = 0;
    int ended = 0;
};

/// Passes bytes between one client and a server on `port`, but not the server's end; the server's
/// bytes wait while they are held.
class Relay : public QTcpServer
{
public:
    explicit Relay(quint16 port)
    {
        if (!listen(QHostAddress::LocalHost))
            qFatal("cannot listen");
        connect(this, &QTcpServer::newConnection, this, [this, port] {
            auto* near = nextPendingConnection();
            auto* far = new QTcpSocket(near);
            far->connectToHost(QHostAddress::LocalHost, port);
            connect(near, &QTcpSocket::readyRead, far, [=, this] {
                greeted = true;
                far->write(near->readAll());
            });
            m_passOn = [=] { near->write(far->readAll()); };
            connect(far, &QTcpSocket::readyRead, near, [this] {
                if (!held)
                    m_passOn();
            });
            connect(near, &QTcpSocket::disconnected, this, [this] { clientHasEnded = true; });
        });
    }

    void letGo()
    {
        held = false;
        m_passOn();
    }

    bool held = false;
    /// The client has sent something, so it is connected as far as TCP goes.
    bool greeted = false;
    bool clientHasEnded = false;

private:
    std::function<void()> m_passOn;
};

/// A client that has begun to connect to a server of its own, which plays `script`.
struct Scene : SecureClient
{
    Scene(const QSslConfiguration& tls, const Script& script,
          TcpClient::FirstChunk firstChunk = TcpClient::FirstChunk::Whole)
        : SecureClient(firstChunk)
        , server(tls)
    {
        server.listen();
        server.play(script);
        start(server.port());
    }

    ScriptedServer server;
};

void breakOff(QTcpSocket& socket)
{
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    QCOMPARE(
        setsockopt(int(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce, sizeof(atOnce)),
        0);
    socket.abort();
}

} // namespace

class TcpClientTlsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(QSslSocket::supportsSsl());
        m_server = m_authority.server();
        m_authority.makeTheOnlyOneTrusted();
    }

    void itConnectsOnceEncrypted_data()
    {
        const Rows<QString, QString> row("listenOn", "host");
        row("name", "127.0.0.1", "localhost");
        row("capitals", "127.0.0.1", "LocalHost");
        row("address", "127.0.0.1", "127.0.0.1");
        row("IPv6", "::1", "[::1]");
    }

    void itConnectsOnceEncrypted()
    {
        QFETCH(QString, listenOn);
        QFETCH(QString, host);
        ScriptedServer server(m_server);
        server.listen(listenOn);
        server.play(Answer);
        SecureClient c;
        c.start(server.port(), host);
        QTRY_COMPARE(c.last(), "Closed");
        QCOMPARE(c.listener.told.first(), "Connected");
        QVERIFY(!c.listener.told.contains("Error"));
        QCOMPARE(c.listener.chunks.join(), Answer);
        QCOMPARE(server.requests(), QList<QByteArray>{"GET / HTTP/1.0\r\n\r\n"});
    }

    void chunksAreThoseOfAPlainConnection()
    {
        Scene c(
            m_server,
            Script{{"HTTP/1.0 200 OK\r\n", "Content-Type: a\r\n\r", "\n" + QByteArray(5000, 'b')},
                   Script::End::KeepOpen},
            TcpClient::FirstChunk::OnePacket);
        QTRY_COMPARE(c.listener.chunks.join().size(), 36 + 5000);
        QCOMPARE(c.listener.chunks.first().size(), TcpClient::PacketBytes);
        QVERIFY(
            c.listener.chunks.first().startsWith("HTTP/1.0 200 OK\r\nContent-Type: a\r\n\r\nb"));
        QVERIFY(!c.listener.told.contains("Closed"));
    }

    void aLongAnswerComesWhole()
    {
        QByteArray answer = "HTTP/1.0 200 OK\r\n\r\n";
        for (int i = 0; answer.size() < 5'000'000; ++i)
            answer += QByteArray::number(i);
        Scene c(m_server, Script{{answer}});
        QTRY_COMPARE(c.last(), "Closed");
        QVERIFY(c.listener.chunks.join() == answer);
    }

    void aServerWithoutTlsIsAnErrorAndIsToldNothing()
    {
        RawServer server([](QTcpSocket& socket) { socket.write(Answer); });
        SecureClient c;
        c.start(server.serverPort());
        QTRY_COMPARE(c.listener.told, QStringList{"Error"});
        QVERIFY2(c.listener.description.startsWith("Error during SSL handshake: "),
                 qPrintable(c.listener.description));
        QVERIFY(!c.listener.description.contains('\n'));
        QTRY_COMPARE(server.ended, 1);
        QCOMPARE(server.connections, 1);
        QCOMPARE(server.received.front(), Handshake);
        QVERIFY(!server.received.contains("GET"));
        QVERIFY(c.listener.chunks.isEmpty());
    }

    void aServerThatClosesDuringTheHandshakeIsAnErrorAndNotCalledAgain_data()
    {
        const Rows<bool> row("breaksOff");
        row("closes", false);
        row("breaks off", true);
    }

    void aServerThatClosesDuringTheHandshakeIsAnErrorAndNotCalledAgain()
    {
        QFETCH(bool, breaksOff);
        RawServer server([=](QTcpSocket& socket) {
            breaksOff ? breakOff(socket) : socket.disconnectFromHost();
        });
        SecureClient c;
        c.start(server.serverPort());
        QTRY_COMPARE(c.listener.told, QStringList{"Error"});
        QCOMPARE(c.listener.description, "The server closed the connection before it was secure");
        QCOMPARE(server.connections, 1);
    }

    void aServerThatBreaksOffAtOnceIsNotCalledAgainAndAgain_data() { plainAndSecure(); }

    void aServerThatBreaksOffAtOnceIsNotCalledAgainAndAgain()
    {
        QFETCH(bool, secure);
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        int connections = 0;
        connect(&server, &QTcpServer::newConnection, this, [&] {
            auto* socket = server.nextPendingConnection();
            ++connections;
            breakOff(*socket);
            socket->deleteLater();
        });
        for (int attempt = 0; attempt < 10; ++attempt) {
            HeardClient c;
            c.client.setSecure(secure);
            connections = 0;
            c.start(server.serverPort());
            QTRY_VERIFY(c.listener.told == QStringList{"Error"} ||
                        (!secure && c.listener.told == (QStringList{"Connected", "Closed"})));
            QVERIFY2(connections < 10, QByteArray::number(connections));
        }
    }

    void aRefusedConnectionIsAnError_data() { plainAndSecure(); }

    void aRefusedConnectionIsAnError()
    {
        QFETCH(bool, secure);
        HeardClient c;
        c.client.setSecure(secure);
        c.start(portOfNobody());
        QTRY_COMPARE(c.listener.told, QStringList{"Error"});
        QCOMPARE(c.listener.description, "Connection refused");
    }

    void closingWithoutCloseNotifyIsNoError()
    {
        ScriptedServer server(m_server);
        server.listen();
        // Two pieces: the connection breaks off in an event of its own.
        server.play(Script{{Answer, "end"}, Script::End::Abort});
        for (int attempt = 0; attempt < 10; ++attempt) {
            SecureClient c;
            c.start(server.port());
            QTRY_COMPARE(c.last(), "Closed");
            QVERIFY(!c.listener.told.contains("Error"));
            QCOMPARE(c.listener.chunks.join(), Answer + "end");
        }
    }

    void closeNotifyAloneIsTheClose()
    {
        ScriptedServer server(m_server);
        server.listen();
        server.play(Answer);
        Relay between(server.port());
        SecureClient c;
        c.start(between.serverPort());
        QTRY_COMPARE(c.last(), "Closed");
        QVERIFY(!c.listener.told.contains("Error"));
        QCOMPARE(c.listener.chunks.join(), Answer);
        QTRY_VERIFY(between.clientHasEnded);
    }

    void closeDuringTheHandshakeTellsNothing()
    {
        RawServer server([](QTcpSocket&) {});
        SecureClient c;
        c.start(server.serverPort());
        QTRY_VERIFY(!server.received.isEmpty());
        QCOMPARE(server.received.front(), Handshake);
        QVERIFY(c.listener.told.isEmpty());
        c.client.Close();
        QTRY_COMPARE(server.ended, 1);
        QVERIFY(c.listener.told.isEmpty());
    }

    void closeAndConnectFromEveryHandler_data()
    {
        const Rows<bool, bool> row("inConnected", "again");
        row("Connected closes", true, false);
        row("Connected connects anew", true, true);
        row("DataArrival closes", false, false);
        row("DataArrival connects anew", false, true);
    }

    void closeAndConnectFromEveryHandler()
    {
        QFETCH(bool, inConnected);
        QFETCH(bool, again);
        Scene c(m_server, Script{{"a\r\n\r\n" + QByteArray(100'000, 'b')}},
                TcpClient::FirstChunk::OnePacket);
        bool done = false;
        const auto handler = [&] {
            if (std::exchange(done, true))
                return;
            if (again)
                QVERIFY(c.client.Connect());
            else
                c.client.Close();
        };
        (inConnected ? c.listener.onConnected : c.listener.onData) = handler;
        QStringList first{"Connected"};
        if (!inConnected)
            first << "Data";
        if (again) {
            QTRY_COMPARE(c.last(), "Closed");
            QCOMPARE(c.listener.told.first(first.size() + 1), first + QStringList{"Connected"});
            QCOMPARE(c.listener.told.count("Closed"), 1);
        } else {
            QTRY_VERIFY(done);
            // Whatever else were told would be so before another client is done.
            SecureClient other;
            other.start(c.server.port());
            QTRY_COMPARE(other.last(), "Closed");
            QTRY_COMPARE(c.server.openConnections(), 0);
            QCOMPARE(c.listener.told, first);
        }
    }

    void whatIsSentBeforeConnectedIsDropped()
    {
        ScriptedServer server(m_server);
        server.listen();
        server.play(Answer);
        Relay between(server.port());
        between.held = true;
        SecureClient c;
        c.start(between.serverPort());
        c.client.SendData("GET /too-early HTTP/1.0\r\n\r\n");
        QTRY_VERIFY(between.greeted);
        QVERIFY(c.listener.told.isEmpty());
        c.client.SendData("GET /still-too-early HTTP/1.0\r\n\r\n");
        between.letGo();
        QTRY_COMPARE(c.last(), "Closed");
        QCOMPARE(server.requests(), QList<QByteArray>{"GET / HTTP/1.0\r\n\r\n"});
    }

    void theNextConnectionStartsAfresh()
    {
        Scene c(m_server, Script{{Answer}});
        QTRY_COMPARE(c.last(), "Closed");
        c.client.SendData("dropped");
        // That the first one was encrypted says nothing of the second.
        RawServer closing([](QTcpSocket& socket) { socket.disconnectFromHost(); });
        c.listener.told.clear();
        c.start(closing.serverPort());
        QTRY_COMPARE(c.listener.told, QStringList{"Error"});
    }

    void aPlainConnectionAfterASecureOneIsPlain()
    {
        Scene c(m_server, Script{{Answer}});
        RawServer plain([](QTcpSocket& socket) {
            socket.write(Answer);
            socket.disconnectFromHost();
        });
        QTRY_COMPARE(c.last(), "Closed");
        c.listener.told.clear();
        c.client.setSecure(false);
        c.start(plain.serverPort());
        QTRY_COMPARE(c.last(), "Closed");
        QCOMPARE(plain.received, "GET / HTTP/1.0\r\n\r\n");
    }

private:
    static void plainAndSecure()
    {
        const Rows<bool> row("secure");
        row("plain", false);
        row("secure", true);
    }

    TestAuthority m_authority;
    QSslConfiguration m_server;
};

QTEST_GUILESS_MAIN(TcpClientTlsTest)
#include "tst_TcpClientTls.moc"
