#include "network/TcpClient.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/TcpListener.h"
#include "support/TimeSeam.h"

#include <QLoggingCategory>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A client that has begun to connect to a server of its own.
struct Scene : HeardClient
{
    explicit Scene(const Script& script,
                   TcpClient::FirstChunk firstChunk = TcpClient::FirstChunk::OnePacket)
        : HeardClient(firstChunk)
    {
        server.listen();
        server.play(script);
        start(server.port());
    }

    ScriptedServer server;
};

} // namespace

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
        HeardClient c;
        for (const auto& host : {u""_s, u" "_s, u"[]"_s}) {
            c.client.setRemoteHost(host);
            QVERIFY2(!c.client.Connect(), qPrintable(host));
        }
        QCoreApplication::processEvents();
        QVERIFY(c.listener.told.isEmpty());
    }

    void firstChunkWaitsForTheHeaderEnd()
    {
        // A status line in a packet of its own, and a header end split over packets.
        Scene s(Script{{"HTTP/1.0 200 OK\r\n", "Content-Type: a\r\n\r", "\n", "body"},
                       Script::End::KeepOpen});
        QTRY_COMPARE(s.listener.chunks.join().size(), 40);
        QVERIFY(s.listener.chunks.first().startsWith("HTTP/1.0 200 OK\r\nContent-Type: a\r\n\r\n"));
    }

    void firstChunkIsOnePacketOfHeaderAndBody()
    {
        const QByteArray answer = "HTTP/1.0 200 OK\r\n\r\n" + QByteArray(5000, 'b');
        Scene s(Script{{answer}});
        QTRY_COMPARE(s.last(), u"Closed"_s);
        QCOMPARE(s.listener.chunks.first().size(), 1460);
        QVERIFY(s.listener.chunks.size() >= 2);
        QCOMPARE(s.listener.chunks.join(), answer);
    }

    void aLongHeaderBlockIsAChunkOfItsOwn()
    {
        const QByteArray header = "HTTP/1.0 200 OK\r\nX: " + QByteArray(3000, 'x') + "\r\n\r\n";
        Scene s(Script{{header + "body"}});
        QTRY_COMPARE(s.listener.chunks, (QList<QByteArray>{header, "body"}));
    }

    void nothingIsCutForWholeChunks()
    {
        const QByteArray answer = "HTTP/1.0 200 OK\r\n\r\n" + QByteArray(4000, 'b');
        Scene s(Script{{answer}}, TcpClient::FirstChunk::Whole);
        QTRY_COMPARE(s.listener.chunks.join(), answer);
        QVERIFY(s.listener.chunks.first().size() > 1460);
    }

    void withoutAHeaderEndTheFirstChunkComesAtTheClose()
    {
        Scene s(Script{{"no ", "header"}});
        QTRY_COMPARE(s.listener.told, (QStringList{"Connected", "Data", "Closed"}));
        QCOMPARE(s.listener.chunks, QList<QByteArray>{"no header"});
    }

    void withoutAHeaderEndTheFirstChunkComesAfter64KiB()
    {
        Scene s(Script{{QByteArray(70'000, 'x')}, Script::End::KeepOpen});
        QTRY_COMPARE(s.listener.chunks.join().size(), 70'000);
        QVERIFY(s.listener.chunks.first().size() >= 64 * 1024);
    }

    void withoutAHeaderEndTheFirstChunkComesAfterTheWait()
    {
        Scene s(Script{{"HTTP/1.0 200"}, Script::End::KeepOpen});
        Timer& wait = timerOf(s.client, "tmrHeader");
        QCOMPARE(wait.Interval(), 10'000);
        QTRY_VERIFY(wait.Enabled());
        QVERIFY(s.listener.chunks.isEmpty());
        wait.elapse();
        QTRY_COMPARE(s.listener.chunks, QList<QByteArray>{"HTTP/1.0 200"});
        QVERIFY(!wait.Enabled());
    }

    void theRestIsDroppedWhenTheHandlerCloses()
    {
        Scene s(Script{{"HTTP/1.0 200 OK\r\n\r\n" + QByteArray(100'000, 'b')}});
        s.listener.onData = [&] { s.client.Close(); };
        // The server may be done with its side before.
        QTRY_COMPARE(s.listener.told, (QStringList{"Connected", "Data"}));
        QTRY_COMPARE(s.server.openConnections(), 0);
        QCoreApplication::processEvents();
        QCOMPARE(s.listener.told, (QStringList{"Connected", "Data"}));
    }

    void theRestIsDroppedWhenTheHandlerConnectsAnew()
    {
        Scene s(Script{{"HTTP/1.0 200 OK\r\n\r\n" + QByteArray(100'000, 'b')}});
        s.server.play("second\r\n\r\n");
        s.listener.onData = [&] {
            if (s.listener.chunks.size() == 1)
                s.client.Connect();
        };
        QTRY_COMPARE(s.listener.told,
                     (QStringList{"Connected", "Data", "Connected", "Data", "Closed"}));
        QCOMPARE(s.listener.chunks[1], "second\r\n\r\n");
    }

    void closedComesAfterTheLastChunkAndOnlyForThePeer()
    {
        Scene s(Script{{"a\r\n\r\n" + QByteArray(3000, 'b')}});
        QTRY_COMPARE(s.listener.told, (QStringList{"Connected", "Data", "Data", "Closed"}));

        ScriptedServer silent;
        silent.listen();
        s.listener.told.clear();
        s.start(silent.port());
        QTRY_COMPARE(silent.requests().size(), 1);
        s.client.Close();
        QTRY_COMPARE(silent.openConnections(), 0);
        QCOMPARE(s.listener.told, QStringList{"Connected"});
    }

    void aResetIsNoError()
    {
        Scene s(Script{{"a\r\n\r\nb"}, Script::End::Abort});
        QTRY_COMPARE(s.last(), u"Closed"_s);
        QVERIFY(!s.listener.told.contains("Error"));
    }

    void aCloseSaysWhetherItWasAReset_data()
    {
        const Rows<Script, QList<QByteArray>, bool> row("script", "chunks", "reset");
        const QByteArray answer = "a\r\n\r\nb";
        using enum Script::End;
        row("a close", Script{{answer}, Close}, {answer}, false);
        row("a close without a word", Script{{}, Close}, {}, false);
        row("a reset", Script{{answer}, Reset}, {answer}, true);
        row("a reset in the header", Script{{"a\r\n"}, Reset}, {"a\r\n"}, true);
        row("a reset without a word", Script{{}, Reset}, {}, true);
    }

    void aCloseSaysWhetherItWasAReset()
    {
        QFETCH(Script, script);
        Scene s(script);
        QTRY_COMPARE(s.last(), u"Closed"_s);
        QVERIFY(!s.listener.told.contains("Error"));
        QTEST(s.listener.chunks, "chunks");
        QTEST(s.client.WasReset(), "reset");
        // The next connection begins without.
        s.client.Connect();
        QVERIFY(!s.client.WasReset());
    }

    void connectsToAnIpv6AddressInBrackets()
    {
        ScriptedServer server;
        server.listen(u"::1"_s);
        server.play("a\r\n\r\n");
        HeardClient c;
        c.start(server.port(), u"[::1]"_s);
        QCOMPARE(c.client.RemoteHost(), "[::1]");
        QTRY_COMPARE(c.listener.chunks, QList<QByteArray>{"a\r\n\r\n"});
    }

    /// The library costs more than 10 ms, which the user of a plain camera need not wait for.
    void plainConnectionsLoadNoTlsLibrary()
    {
        Scene s(Script{{"a\r\n\r\n"}});
        QTRY_COMPARE(s.listener.told, (QStringList{"Connected", "Data", "Closed"}));
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
        HeardClient c;
        c.client.setSecure(true);
        c.start(server.port());
        QTRY_COMPARE(c.listener.told, QStringList{"Error"});
        QCOMPARE(c.listener.description,
                 "Secure connections (TLS) are not available on this computer");
        QCOMPARE(server.connections(), 0);
        // A plain connection works as before.
        c.client.setSecure(false);
        server.play("a\r\n\r\n");
        c.listener.told.clear();
        c.start(server.port());
        QTRY_COMPARE(c.listener.told, (QStringList{"Connected", "Data", "Closed"}));
    }
};

QTEST_GUILESS_MAIN(TcpClientTest)
#include "tst_TcpClient.moc"
