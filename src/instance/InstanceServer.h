#pragma once

#include <QLocalServer>
#include <QLocalSocket>

#include <functional>

class InstanceLock;
class Timer;

/// Takes the files that starting instances hand over, for an instance that runs. One instance
/// serves; the others stand in line, each with a connection to the one that serves, and when that
/// ends, however it ends, one of them serves in its place. Never blocks. A connection that says
/// nothing, not all or nonsense is dropped without harm to others.
class InstanceServer : public QObject
{
    Q_OBJECT

public:
    /// Gets each file name that comes. Returns whether this instance takes it; one that is not
    /// taken stays with its sender, which then tries again. Must not take long: the sender waits.
    using Take = std::function<bool(const QString& name)>;

    /// Serves at `place`, which must outlive it, or stands in line there. Does nothing where
    /// meeting is impossible.
    InstanceServer(InstanceLock& place, Take take, QObject* parent = nullptr);
    ~InstanceServer() override;

    bool isServing() const { return m_server.isListening(); }
    /// Whether it is known to the instance that serves.
    bool isInLine() const { return m_line.state() == QLocalSocket::ConnectedState; }

    /// Connections open at a time, those in line included; a further one ends the oldest.
    static constexpr qsizetype MaxConnections = 200;

private:
    void serveOrStandInLine();
    void serve();
    void welcome();
    void listenTo(QLocalSocket* connection);
    void answer(QLocalSocket* connection, const QByteArray& message);
    void drop(QLocalSocket* connection);

    InstanceLock& m_place;
    Take m_take;
    QLocalServer m_server;
    /// In the order of their coming.
    QList<QLocalSocket*> m_connections;
    QLocalSocket m_line;
    Timer* m_tmrLine;
};
