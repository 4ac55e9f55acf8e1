#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QTcpServer>

#include <memory>

class QSslConfiguration;
class QTcpSocket;

/// What the server does with one connection once the request's empty line has come.
struct Script
{
    enum class End {
        /// Closes after the last piece.
        Close,
        /// Leaves the connection open and says nothing more.
        KeepOpen,
        /// Breaks the connection off.
        Abort,
        /// Breaks it off by a TCP reset, once the last piece is on its way.
        Reset,
    };

    /// Sent one after the other, each in an event of its own.
    QList<QByteArray> pieces;
    End end = End::Close;
    /// Do not wait for a request before the first piece.
    bool atOnce = false;
};

/// A server on the loopback address that plays scripts: the n-th connection gets the n-th script,
/// later ones the last. It records what it was asked. It can split, stall, lie and close anywhere.
class ScriptedServer : public QObject
{
    Q_OBJECT

public:
    explicit ScriptedServer(QObject* parent = nullptr);
    /// Speaks TLS, by what TestAuthority::server() gives. Connections count once they are
    /// encrypted.
    explicit ScriptedServer(const QSslConfiguration& tls);

    /// `address` may be "::1"; fails the program where the server cannot listen.
    void listen(const QString& address = QStringLiteral("127.0.0.1"));

    quint16 port() const { return m_server->serverPort(); }
    /// "127.0.0.1:PORT" and `path`, as a camera address; one with TLS begins with "https://".
    QString url(const QString& path = QStringLiteral("/a.jpg")) const;

    void play(const Script& script) { m_scripts.append(script); }
    void play(const QByteArray& answer, Script::End end = Script::End::Close)
    {
        play(Script{{answer}, end});
    }

    const QList<QByteArray>& requests() const { return m_requests; }
    int connections() const { return m_connections; }
    /// Connections that the client has not ended yet.
    int openConnections() const { return m_open; }

    /// Sends `bytes` on the newest connection, beyond its script.
    void sendMore(const QByteArray& bytes);
    void closeNewest();

signals:
    void RequestCame();

private:
    void accept();
    void playTo(QTcpSocket* socket, const Script& script);

    ScriptedServer(QTcpServer* server, const QString& scheme);

    std::unique_ptr<QTcpServer> m_server;
    QString m_scheme;
    QTcpSocket* m_newest = nullptr;
    QList<Script> m_scripts;
    QList<QByteArray> m_requests;
    int m_connections = 0;
    int m_open = 0;
};

/// A port of the loopback address on which nobody listens.
quint16 portOfNobody();

/// An answer with a status line, the headers of `headers` (each with its line end) and `body`.
QByteArray httpAnswer(const QByteArray& body, const QByteArray& headers = {},
                      const QByteArray& status = "200 OK");

/// httpAnswer with content type and length as a well-behaved server sends them.
QByteArray pictureAnswer(const QByteArray& body, const QByteArray& moreHeaders = {});
