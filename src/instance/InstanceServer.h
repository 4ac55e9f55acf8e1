#pragma once

#include <QLocalServer>
#include <QLocalSocket>

class FileInbox;
class InstanceLock;
class Timer;

/// The side of a hand-over of an instance that runs: as the server it puts the files that starting
/// instances hand over into its inbox. One instance is the server; the others are queued, each with
/// a connection to the server, and when that ends, however it ends, one of them becomes the server.
/// Never blocks. A connection that sends nothing, not all or nonsense is dropped without harm to
/// others.
class InstanceServer : public QObject
{
    Q_OBJECT

public:
    /// Becomes the server or is queued. `lock` and `inbox` must outlive it. A file that the inbox
    /// does not take stays with its sender, which then tries again. Does nothing where there can
    /// be no server.
    InstanceServer(InstanceLock& lock, FileInbox& inbox, QObject* parent = nullptr);
    ~InstanceServer() override;

    bool isServing() const { return m_server.isListening(); }
    /// Whether the server knows that this instance waits for its end.
    bool isQueued() const { return m_queued.state() == QLocalSocket::ConnectedState; }

    /// Connections open at a time, those of queued instances included; a further one ends the
    /// oldest.
    static constexpr qsizetype MaxConnections = 200;

private:
    void serveOrQueue();
    void serve();
    void acceptConnections();
    void read(QLocalSocket* connection);
    void handle(QLocalSocket* connection, const QByteArray& message);
    void drop(QLocalSocket* connection);

    InstanceLock& m_lock;
    FileInbox& m_inbox;
    QLocalServer m_server;
    /// In the order of their coming.
    QList<QLocalSocket*> m_connections;
    /// To the server, while this instance is queued.
    QLocalSocket m_queued;
    Timer* m_tmrQueue;
};
