#include "support/TestAuthority.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/Waiting.h"

#include <QFile>
#include <QProcess>
#include <QSslKey>
#include <QTest>

namespace {

void openssl(const QStringList& words)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start("openssl", words);
    if (!process.waitForFinished(HangMs) || process.exitCode() != 0)
        qFatal("openssl %s: %s", qPrintable(words.join(' ')), process.readAll().constData());
}

const QStringList NewKey{"-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes"};

} // namespace

TestAuthority::TestAuthority(const QString& name)
{
    openssl(QStringList{"req", "-x509"} + NewKey +
            QStringList{"-keyout", file("ca.key"), "-out", file("ca.pem"), "-days", "2", "-subj",
                        "/CN=" + name});
}

void TestAuthority::makeTheOnlyOneTrusted() const
{
    auto configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({QSslCertificate(contentOf(file("ca.pem")))});
    QSslConfiguration::setDefaultConfiguration(configuration);
}

void TestAuthority::install(const QString& folder) const
{
    writeFile(folder + "/authority.pem", contentOf(file("ca.pem")));
    openssl({"rehash", folder}); // it is looked for by a hash of its name
}

QString TestAuthority::joined(const QString& name) const
{
    const QString both = file(name + ".pem");
    writeFile(both, contentOf(file(name + ".key")) + contentOf(file(name + ".crt")));
    return both;
}

QString TestAuthority::certificateFile(const QString& names, int days)
{
    const QString serial = QString::number(m_serial++);
    const QString key = file(serial + ".key");
    const QString certificate = file(serial + ".crt");
    const QString request = file(serial + ".csr");
    const QString extensions = file(serial + ".ext");
    writeFile(extensions, "subjectAltName=" + names.toUtf8() + "\n");
    openssl(QStringList{"req", "-new"} + NewKey +
            QStringList{"-keyout", key, "-out", request, "-subj", "/CN=camera " + serial});
    openssl({"x509", "-req", "-in", request, "-CA", file("ca.pem"), "-CAkey", file("ca.key"),
             "-set_serial", serial, "-days", QString::number(days), "-extfile", extensions, "-out",
             certificate});
    return joined(serial);
}

QString TestAuthority::selfSignedFile()
{
    const QString key = file("self.key");
    const QString certificate = file("self.crt");
    openssl(QStringList{"req", "-x509"} + NewKey +
            QStringList{"-keyout", key, "-out", certificate, "-days", "2", "-subj", "/CN=camera",
                        "-addext", QString("subjectAltName=") + LoopbackNames});
    return joined("self");
}

QSslConfiguration TestAuthority::server(const QString& certificateFile)
{
    const QByteArray both = contentOf(certificateFile);
    QSslConfiguration configuration;
    configuration.setLocalCertificate(QSslCertificate(both));
    configuration.setPrivateKey(QSslKey(both, QSsl::Ec));
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    return configuration;
}

void TestAuthority::addBadCertificates(TestAuthority& other)
{
    const Rows<QString, QString> row("file", "reason");
    row("unknown authority", other.certificateFile(),
        "The issuer certificate of a locally looked up certificate could not be found");
    row("self-signed", selfSignedFile(), "The certificate is self-signed, and untrusted");
    row("another host", certificateFile("DNS:camera.example,IP:127.0.0.2"),
        "The host name did not match any of the valid hosts for this certificate");
    row("expired", certificateFile("IP:127.0.0.1", -1), "The certificate has expired");
}
