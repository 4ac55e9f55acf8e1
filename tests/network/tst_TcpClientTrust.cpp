// Whom a secure connection trusts.

#include "support/RunAgain.h"
#include "support/ScriptedServer.h"
#include "support/SecureClient.h"
#include "support/TestAuthority.h"

namespace {

const QByteArray Answer = "HTTP/1.0 200 OK\r\n\r\nbody";
/// Where the system keeps its certificates.
const QString SystemFolder = "/etc/ssl/certs";

} // namespace

class TcpClientTrustTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (!runsAgain()) {
            m_authority.makeTheOnlyOneTrusted();
            return;
        }
        // A system that trusts the test's authority and no other. The TLS library has not looked
        // yet.
        QCOMPARE(mountSmallDisk(SystemFolder, 1024), "mounted");
        m_authority.install(SystemFolder);
    }

    void aBadCertificateIsAnErrorWithItsReason_data() { m_authority.addBadCertificates(m_other); }

    void aBadCertificateIsAnErrorWithItsReason()
    {
        QFETCH(QString, file);
        ScriptedServer server(TestAuthority::server(file));
        server.listen();
        server.play(Answer);
        SecureClient c;
        int number = -1;
        connect(&c.client, &TcpClient::Error, this, [&](int given) { number = given; });
        c.start(server.port());
        QTRY_COMPARE(c.listener.told, QStringList{"Error"});
        QTEST(c.listener.description, "reason");
        QCOMPARE(number, int(QAbstractSocket::SslHandshakeFailedError));
        QTRY_COMPARE(server.openConnections(), 0);
        QVERIFY(server.requests().isEmpty());
        QCOMPARE(c.listener.told, QStringList{"Error"});
    }

    /// In the other process nothing but the system's folder says whom to trust.
    void theSystemsCertificatesAreTheOnesTrusted()
    {
        if (ranWithOwnMounts())
            return;
        ScriptedServer known(m_authority.server());
        known.listen();
        known.play(Answer);
        SecureClient c;
        c.start(known.port());
        QTRY_COMPARE(c.last(), "Closed");
        QCOMPARE(c.listener.chunks.join(), Answer);

        ScriptedServer unknown(m_other.server());
        unknown.listen();
        unknown.play(Answer);
        c.listener.told.clear();
        c.start(unknown.port());
        QTRY_COMPARE(c.listener.told, QStringList{"Error"});
        QVERIFY(unknown.requests().isEmpty());
    }

private:
    TestAuthority m_authority;
    TestAuthority m_other{"Somebody else"};
};

QTEST_GUILESS_MAIN(TcpClientTrustTest)
#include "tst_TcpClientTrust.moc"
