#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// The date of a file that is put without one.
inline const QDateTime FirstDate(QDate(2020, 3, 1), QTime(12, 0), Qt::UTC);

/// lighttpd, a web server as cameras' owners run them, on a free port of both loopback addresses,
/// with a document root of its own. It keeps connections open for longer than any test runs. Fails
/// the program where it cannot start. What is called "something.cgi" is a shell script that
/// answers.
class WebServer
{
public:
    /// Whether blanks and other unescaped characters in a request's path are refused, as lighttpd
    /// does unless it is told otherwise. Where they are taken as typed, there are no redirects.
    enum class Paths { Escaped, AsTyped };

    /// `certificateFile` (key and certificate, as TestAuthority makes them) makes all of it speak
    /// TLS and nothing else. `movedTo` is where "/moved.jpg" leads, with 302; without it to the
    /// server's own "/large.jpg".
    explicit WebServer(const QString& certificateFile = {}, const QString& movedTo = {},
                       Paths paths = Paths::Escaped);
    ~WebServer();

    void stop();

    /// A camera address: with "https://" where the server speaks TLS, else without a scheme.
    QString url(const QString& path, const QString& host = "127.0.0.1") const;

    quint16 port() const { return m_port; }

    /// `name` may lie in a folder, which is made.
    void put(const QString& name, const QByteArray& bytes, const QDateTime& date = FirstDate);

private:
    bool start(const QString& program);
    QByteArray configuration() const;
    QString redirectTarget() const;

    QString m_certificateFile;
    QString m_movedTo;
    Paths m_paths;
    QTemporaryDir m_scratch;
    QProcess m_process;
    quint16 m_port = 0;
};
