#include "instance/InstanceClient.h"

#include "instance/InstanceLock.h"
#include "instance/InstanceMessage.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The server may have taken the lock and not listen yet.
constexpr int PauseMs = 20;

/// One attempt: true where the server acknowledged the file.
bool deliver(const QString& serverName, const QByteArray& message, const QDeadlineTimer& end)
{
    QLocalSocket socket;
    socket.connectToServer(serverName);
    if (!socket.waitForConnected(static_cast<int>(end.remainingTime())))
        return false;
    socket.write(message);
    char answer = 0;
    return socket.waitForReadyRead(static_cast<int>(end.remainingTime())) &&
           socket.getChar(&answer) && answer == instanceMessage::Acknowledged;
}

} // namespace

InstanceClient::InstanceClient(InstanceLock& lock)
    : m_lock(lock)
{
}

InstanceClient::Result InstanceClient::handOver(const QString& name, int patienceMs)
{
    const QByteArray message =
        instanceMessage::encode(instanceMessage::Kind::File, nameForServer(name));
    const QDeadlineTimer end(patienceMs);
    do {
        if (!message.isEmpty() && deliver(m_lock.serverName(), message, end))
            return Result::Delivered;
        if (m_lock.take() != FileLock::Result::HeldByAnother)
            return Result::NoServer;
        if (message.isEmpty())
            break;
        QThread::msleep(PauseMs);
    } while (!end.hasExpired());
    return Result::Unanswered;
}

QString InstanceClient::nameForServer(const QString& name)
{
    // Kept: a name that is nothing but the ending, in whatever letter case, is no movie for the
    // instance that runs, which it would be behind a folder.
    if (name.isEmpty() || name.toLower() == ".pvm"_L1)
        return name;
    return QDir::current().absoluteFilePath(name);
}
