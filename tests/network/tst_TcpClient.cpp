#include "network/TcpClient.h"
#include "support/ScriptedServer.h"
#include "support/TcpListener.h"
#include "support/TimeSeam.h"

#include <QLoggingCategory>

#include <sys/socket.h>

using namespace Qt::Literals::StringLiterals;

static void start(TcpClient& client, const ScriptedServer& server)
{
    client.setRemoteHost(u"127.0.0.1"_s);
    QVERIFY(client.setRemotePort(server.port()));
    QVERIFY(client.Connect());
}

class TcpClientTest : public QObject
{
    Q_OBJECT
private slots:
    void aPortOutsideTheRangeIsRefused()
    {
        TcpClient client(TcpClient::FirstChunk::Whole);
        QVERIFY(client.setRemotePort(65535));
        QVERIFY(!client.setRemotePort(0));
        QVERIFY(!client.setRemotePort(65536));
        QVERIFY(!client.setRemotePort(-1));
        QCOMPARE(client.RemotePort(), 65535);
    }

    void withoutAHostNothingConnects()
    {
        TcpClient client(TcpClient::FirstChunk::Whole);
        TcpListener listener(client);
        for (const auto& host : {u""_s, u" "_s, u"[]"_s}) {
            client.setRemoteHost(host);
            QVERIFY2(!client.Connect(), qPrintable(host));
        }
        QCoreApplication::processEvents();
        QVERIFY(listener.told.isEmpty());
    }

    void firstChunkWaitsForTheHeaderEnd()
    {
        // A status line in a packet of its own, and a header end split over packets.
        ScriptedServer server;
        server.listen();
        server.play(Script{{"HTTP/1.0 200 OK\r\n", "Content-Type: a\r\n\r", "\n", "body"},
                           Script::End::KeepOpen});
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        start(client, server);
        QTRY_COMPARE(listener.chunks.join().size(), 40);
        QVERIFY(listener.chunks.first().startsWith("HTTP/1.0 200 OK\r\nContent-Type: a\r\n\r\n"));
    }

    void firstChunkIsOnePacketOfHeaderAndBody()
    {
        const QByteArray answer = "HTTP/1.0 200 OK\r\n\r\n" + QByteArray(5000, 'b');
        ScriptedServer server;
        server.listen();
        server.play(answer);
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        start(client, server);
        QTRY_COMPARE(listener.told.value(listener.told.size() - 1), u"Closed"_s);
        QCOMPARE(listener.chunks.first().size(), 1460);
        QVERIFY(listener.chunks.size() >= 2);
        QCOMPARE(listener.chunks.join(), answer);
    }

    void aLongHeaderBlockIsAChunkOfItsOwn()
    {
        const QByteArray header = "HTTP/1.0 200 OK\r\nX: " + QByteArray(3000, 'x') + "\r\n\r\n";
        ScriptedServer server;
        server.listen();
        server.play(header + "body");
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        start(client, server);
        QTRY_COMPARE(listener.chunks.size(), 2);
        QCOMPARE(listener.chunks[0], header);
        QCOMPARE(listener.chunks[1], "body");
    }

    void nothingIsCutForWholeChunks()
    {
        const QByteArray answer = "HTTP/1.0 200 OK\r\n\r\n" + QByteArray(4000, 'b');
        ScriptedServer server;
        server.listen();
        server.play(answer);
        TcpClient client(TcpClient::FirstChunk::Whole);
        TcpListener listener(client);
        start(client, server);
        QTRY_COMPARE(listener.chunks.join(), answer);
        QVERIFY(listener.chunks.first().size() > 1460);
    }

    void withoutAHeaderEndTheFirstChunkComesAtTheClose()
    {
        ScriptedServer server;
        server.listen();
        server.play(Script{{"no ", "header"}});
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        start(client, server);
        QTRY_COMPARE(listener.told, (QStringList{"Connected", "Data", "Closed"}));
        QCOMPARE(listener.chunks, QList<QByteArray>{"no header"});
    }

    void withoutAHeaderEndTheFirstChunkComesAfter64KiB()
    {
        ScriptedServer server;
        server.listen();
        server.play(Script{{QByteArray(70'000, 'x')}, Script::End::KeepOpen});
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        start(client, server);
        QTRY_COMPARE(listener.chunks.join().size(), 70'000);
        QVERIFY(listener.chunks.first().size() >= 64 * 1024);
    }

    void withoutAHeaderEndTheFirstChunkComesAfterTheWait()
    {
        ScriptedServer server;
        server.listen();
        server.play(Script{{"HTTP/1.0 200"}, Script::End::KeepOpen});
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        Timer& wait = timerOf(client, "tmrHeader");
        QCOMPARE(wait.Interval(), 10'000);
        start(client, server);
        QTRY_VERIFY(wait.Enabled());
        QVERIFY(listener.chunks.isEmpty());
        wait.elapse();
        QTRY_COMPARE(listener.chunks, QList<QByteArray>{"HTTP/1.0 200"});
        QVERIFY(!wait.Enabled());
    }

    void theRestIsDroppedWhenTheHandlerCloses()
    {
        ScriptedServer server;
        server.listen();
        server.play("HTTP/1.0 200 OK\r\n\r\n" + QByteArray(100'000, 'b'));
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        listener.onData = [&] { client.Close(); };
        start(client, server);
        QTRY_COMPARE(server.connections(), 1);
        QTRY_COMPARE(server.openConnections(), 0);
        QCOMPARE(listener.told, (QStringList{"Connected", "Data"}));
    }

    void theRestIsDroppedWhenTheHandlerConnectsAnew()
    {
        ScriptedServer server;
        server.listen();
        server.play("HTTP/1.0 200 OK\r\n\r\n" + QByteArray(100'000, 'b'));
        server.play("second\r\n\r\n");
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        listener.onData = [&] {
            if (listener.chunks.size() == 1)
                client.Connect();
        };
        start(client, server);
        QTRY_COMPARE(listener.told,
                     (QStringList{"Connected", "Data", "Connected", "Data", "Closed"}));
        QCOMPARE(listener.chunks[1], "second\r\n\r\n");
    }

    void closedComesAfterTheLastChunkAndOnlyForThePeer()
    {
        ScriptedServer server;
        server.listen();
        server.play("a\r\n\r\n" + QByteArray(3000, 'b'));
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        start(client, server);
        QTRY_COMPARE(listener.told, (QStringList{"Connected", "Data", "Data", "Closed"}));

        ScriptedServer silent;
        silent.listen();
        listener.told.clear();
        start(client, silent);
        QTRY_COMPARE(silent.requests().size(), 1);
        client.Close();
        QTRY_COMPARE(silent.openConnections(), 0);
        QCOMPARE(listener.told, QStringList{"Connected"});
    }

    void aResetIsNoError()
    {
        ScriptedServer server;
        server.listen();
        server.play(Script{{"a\r\n\r\nb"}, Script::End::Abort});
        TcpClient client(TcpClient::FirstChunk::OnePacket);
        TcpListener listener(client);
        start(client, server);
        QTRY_COMPARE(listener.told.value(listener.told.size() - 1), u"Closed"_s);
        QVERIFY(!listener.told.contains("Error"));
    }

    void aRefusedConnectionIsAnError()
    {
        quint16 freePort = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost));
            freePort = probe.serverPort();
        }
        TcpClient client(TcpClient::FirstChunk::Whole);
        TcpListener listener(client);
        client.setRemoteHost(u"127.0.0.1"_s);
        QVERIFY(client.setRemotePort(freePort));
        QVERIFY(client.Connect());
        QTRY_COMPARE(listener.told, QStringList{"Error"});
        QCOMPARE(listener.description, "Connection refused");
    }

    void aPeerThatBreaksOffAtOnceIsNotCalledAgainAndAgain()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        int connections = 0;
        connect(&server, &QTcpServer::newConnection, this, [&] {
            auto* socket = server.nextPendingConnection();
            ++connections;
            const linger atOnce{.l_onoff = 1, .l_linger = 0};
            QCOMPARE(setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce,
                                sizeof(atOnce)),
                     0);
            socket->abort();
            socket->deleteLater();
        });
        TcpClient client(TcpClient::FirstChunk::Whole);
        TcpListener listener(client);
        client.setRemoteHost(u"127.0.0.1"_s);
        QVERIFY(client.setRemotePort(server.serverPort()));
        for (int attempt = 0; attempt < 10; ++attempt) {
            listener.told.clear();
            connections = 0;
            QVERIFY(client.Connect());
            QTRY_VERIFY(listener.told == QStringList{"Error"} ||
                        listener.told == (QStringList{"Connected", "Closed"}));
            QVERIFY2(connections < 10, QByteArray::number(connections));
        }
    }

    void connectsToAnIpv6AddressInBrackets()
    {
        ScriptedServer server;
        server.listen(u"::1"_s);
        server.play("a\r\n\r\n");
        TcpClient client(TcpClient::FirstChunk::Whole);
        TcpListener listener(client);
        client.setRemoteHost(u"[::1]"_s);
        QVERIFY(client.setRemotePort(server.port()));
        QVERIFY(client.Connect());
        QCOMPARE(client.RemoteHost(), "[::1]");
        QTRY_COMPARE(listener.chunks, QList<QByteArray>{"a\r\n\r\n"});
    }

    /// The library costs more than 10 ms, which the user of a plain camera need not wait for.
    void plainConnectionsLoadNoTlsLibrary()
    {
        ScriptedServer server;
        server.listen();
        server.play("a\r\n\r\n");
        TcpClient client(TcpClient::FirstChunk::Whole);
        TcpListener listener(client);
        start(client, server);
        QTRY_COMPARE(listener.told, (QStringList{"Connected", "Data", "Closed"}));
        QFile maps("/proc/self/maps");
        QVERIFY(maps.open(QIODevice::ReadOnly));
        const QByteArray loaded = maps.readAll();
        QVERIFY(loaded.contains("libQt6Network"));
        QVERIFY(!loaded.contains("backend.so"));
        QVERIFY(!loaded.contains("libssl"));
    }

    /// Last of all: the library is looked for once, and this test sees to it that none is found.
    void withoutATlsLibraryASecureConnectionIsAnError()
    {
        QCoreApplication::setLibraryPaths({});
        QLoggingCategory::setFilterRules("qt.network.ssl.warning=false");
        ScriptedServer server;
        server.listen();
        TcpClient client(TcpClient::FirstChunk::Whole);
        TcpListener listener(client);
        client.setSecure(true);
        start(client, server);
        QTRY_COMPARE(listener.told, QStringList{"Error"});
        QCOMPARE(listener.description,
                 "Secure connections (TLS) are not available on this computer");
        QCOMPARE(server.connections(), 0);
        // A plain connection works as before.
        client.setSecure(false);
        server.play("a\r\n\r\n");
        listener.told.clear();
        start(client, server);
        QTRY_COMPARE(listener.told, (QStringList{"Connected", "Data", "Closed"}));
    }
};

QTEST_GUILESS_MAIN(TcpClientTest)
#include "tst_TcpClient.moc"
