#pragma once

#include "HttpRequest.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QSize>
#include <QString>
#include <QTcpServer>

class QTcpSocket;

/// An HTTP server (RFC 9110, RFC 9112) of one picture that is different every time, under
/// "/clock.jpg" and "/", for clients on this machine.
///
/// It answers GET and HEAD, keeps a connection open where the client asks for it, and says 304
/// to If-Modified-Since while the picture is the same. Other methods get 405, other paths 404,
/// broken requests 400 (431 over 8 KiB, 505 for another HTTP) and the end of the connection.
class DemoServer : public QObject
{
    Q_OBJECT
public:
    struct Options
    {
        QSize size{1280, 720}; ///< of the picture, in pixels
        int quality = 85;      ///< of the JPEG, 1 to 100
        int unchangedMs = 0;   ///< how long a picture stays; 0: a new one for every request
        int idleMs = 30'000;   ///< a connection on which nothing is finished for so long is closed
    };

    /// More connections than this at the same time are closed at once.
    static constexpr int maxConnections = 64;

    explicit DemoServer(const Options& options, QObject* parent = nullptr);

    /// Listens on 127.0.0.1; `port` 0 takes any free one. False, with the reason in `error`,
    /// where that is not possible.
    bool listen(quint16 port, QString& error);

    /// Listens on ::1 as well, on the same port; after `listen`.
    bool listenOnIpv6(QString& error);

    quint16 port() const { return m_ipv4.serverPort(); }

signals:
    /// A request was answered: its first line with anything unprintable replaced, the status
    /// code, and the number of bytes of the body that was sent.
    void answered(const QString& requestLine, int status, qint64 bodyBytes);

private:
    class Connection;

    void acceptFrom(QTcpServer& server);

    /// Draws the picture that a request at this moment gets, where it is time for a new one.
    void renew();

    /// The picture has not changed since `moment`. Never so where every request gets a new one:
    /// a date counts whole seconds, in which there may be several.
    bool isKnown(const QDateTime& moment) const;

    Options m_options;
    QTcpServer m_ipv4;
    QTcpServer m_ipv6;
    int m_connections = 0;

    quint64 m_frame = 0;
    QByteArray m_jpeg;
    QDateTime m_drawnAt;
    QElapsedTimer m_age;
};
