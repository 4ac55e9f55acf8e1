#pragma once

#include "shared/Timer.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class QTcpSocket;

/// A TCP client that tells its owner what happens by signals, each in an event of its own, and
/// decides what a "chunk" of the answer is.
///
/// The first DataArrival comes when the header block is complete (its empty line has come, see
/// network/HeaderEnd.h), or
/// 64 KiB have come, or the peer has closed, or 10 s have passed since the first byte. Later
/// chunks are whatever has come since. Names resolve and connections are made without blocking.
/// It never connects again by itself and knows nothing of HTTP beyond the empty line.
///
/// A secure connection speaks TLS from its first byte. The server's certificate has to be one that
/// the system's certificates vouch for and has to be made out to RemoteHost; else the connection
/// is an Error that gives the reason, and nothing has been sent. It never falls back to plain text.
/// There is no time-out on connecting beside the system's and Qt's own, and none on the handshake.
class TcpClient : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString RemoteHost READ RemoteHost WRITE setRemoteHost)
    Q_PROPERTY(int RemotePort READ RemotePort)

public:
    /// How much the first chunk carries.
    enum class FirstChunk {
        /// All that has come.
        Whole,
        /// The header block and so much body that both together are one Ethernet packet's worth
        /// of payload (1460 bytes); the header block alone where that is longer; everything
        /// where there is no end of a header.
        OnePacket,
    };

    static constexpr int PacketBytes = 1460;
    static constexpr qsizetype MaxHeaderBytes = 64 * 1024;
    static constexpr int HeaderWaitMs = 10'000;

    explicit TcpClient(FirstChunk firstChunk, QObject* parent = nullptr);
    ~TcpClient() override;

    /// A host name or address; an IPv6 address stands in brackets, as in a URL.
    QString RemoteHost() const { return m_host; }
    void setRemoteHost(const QString& host) { m_host = host; }

    /// 1 to 65535. False, and nothing changes, for any other number.
    int RemotePort() const { return m_port; }
    bool setRemotePort(int port);

    /// Whether the next connection speaks TLS. False by default.
    bool Secure() const { return m_secure; }
    void setSecure(bool on) { m_secure = on; }

    /// Closes what was open and starts to connect. Connected (for a secure connection: once it is
    /// encrypted) or Error follows. False, with no signal, where there is no host to connect to.
    bool Connect();

    /// Hands `bytes` to an open connection; without one they are dropped.
    void SendData(const QByteArray& bytes);

    /// The chunk that the last DataArrival announced; empty when it has been taken.
    QByteArray GetData();

    /// Whether the peer's close that Closed has told last was a reset, by which it may have thrown
    /// away what it had still to send. False from the next Connect() on.
    bool WasReset() const { return m_wasReset; }

    /// Ends the connection at once. What has come and was not delivered is dropped, and no
    /// signal of this connection follows.
    void Close();

    /// Whether a connection of this run was given up while its name was looked up. The system's
    /// look-up cannot be ended and may go on, in a thread of Qt's.
    static bool hasLeftLookUp();

signals:
    /// The peer has taken the connection. Connected follows: at once, or once it is encrypted, for
    /// which a peer may take as long as it likes.
    void Reached();
    void Connected();
    void DataArrival();
    /// The peer has closed, and the last DataArrival has been handled. Never after Close(). A
    /// secure peer that closes without close_notify (RFC 8446, 6.1) has closed too, as cameras'
    /// servers do: whether all has come is for the reader of the bytes to judge. A reset is a
    /// close, too: see WasReset().
    void Closed();
    /// The connection failed or broke. `number` is a QAbstractSocket::SocketError, `description`
    /// a text for the user, one line. The peer's close is never an Error, but for one that comes
    /// before a secure connection is encrypted.
    void Error(int number, const QString& description);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void connectPlain(const QString& host);
    void connectSecure(const QString& host);
    void established();
    void receive();
    void readSocket();
    void peerHasClosed();
    void securePeerHasClosed();
    void failed(int number, const QString& text);
    void schedule();
    void deliverNext();

    struct SocketDeleter
    {
        void operator()(QTcpSocket* socket) const;
    };

    FirstChunk m_firstChunk;
    QString m_host;
    int m_port = 80;
    bool m_secure = false;

    /// Why a connection failed, or broke.
    struct Failure
    {
        int number;
        QString description;
    };

    /// All that one connection has come to; each begins with a new one.
    struct Connection
    {
        std::unique_ptr<QTcpSocket, SocketDeleter> socket;
        /// What has come and was not delivered.
        QByteArray received;
        /// What was delivered and not taken.
        QByteArray chunk;
        /// Where the body begins in `received`, before the first chunk; -1 until that is known.
        qsizetype bodyStart = -1;
        /// So far the header's end has been looked for.
        qsizetype searched = 0;
        /// Connected has been told: bytes may be sent, and what comes is the peer's answer.
        bool established = false;
        bool firstDelivered = false;
        bool waitedEnough = false;
        bool peerClosed = false;
        /// The peer has broken it off.
        bool reset = false;
        std::optional<Failure> failure;
        /// How often the system has answered the attempt to connect to one address.
        int connectAnswers = 0;

        bool isOver() const { return peerClosed || failure; }
        bool firstChunkIsComplete();
        qsizetype firstChunkSize(FirstChunk firstChunk) const;
    };

    Timer m_headerWait;
    Connection m_connection;
    bool m_wasReset = false;
    /// Also across connections: the next event is on its way.
    bool m_scheduled = false;
};
