#pragma once

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTemporaryDir>

/// A certificate authority of a test's own, made anew by `openssl` with keys that nobody else ever
/// has, and the certificates of its servers. Fails the program where openssl does.
class TestAuthority
{
public:
    explicit TestAuthority(const QString& name = "Pevora test authority");

    /// This program's secure connections trust this authority and no other, from now on.
    void makeTheOnlyOneTrusted() const;

    /// Puts its certificate where a system keeps those that it trusts.
    void install(const QString& folder) const;

    /// A file with key and certificate for the hosts of `names` ("DNS:localhost,IP:127.0.0.1"),
    /// valid from now for `days`, which may be negative: it has expired then.
    QString certificateFile(const QString& names = LoopbackNames, int days = 2);
    /// A file with key and certificate that vouches for itself.
    QString selfSignedFile();

    /// What a server needs that shows the certificate of such a file.
    static QSslConfiguration server(const QString& certificateFile);
    /// A server with a good certificate for the loopback addresses.
    QSslConfiguration server() { return server(certificateFile()); }

    /// Rows of a test's data, columns "file" and "reason": certificates for a server on 127.0.0.1
    /// that must be refused by who trusts this authority and not `other`, and the reason given.
    void addBadCertificates(TestAuthority& other);

private:
    static constexpr auto LoopbackNames = "DNS:localhost,IP:127.0.0.1,IP:::1";

    QString file(const QString& name) const { return m_folder.filePath(name); }
    /// The files NAME.key and NAME.crt as one file.
    QString joined(const QString& name) const;

    QTemporaryDir m_folder;
    int m_serial = 1;
};
