#include "instance/InstanceClient.h"

#include "instance/InstanceLock.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QThread>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The running instance may have taken the place and not listen yet.
constexpr int PauseMs = 20;

/// One attempt: true where the file was taken.
bool isTaken(const QString& serverName, const QByteArray& message, const QDeadlineTimer& end)
{
    QLocalSocket socket;
    socket.connectToServer(serverName);
    if (!socket.waitForConnected(static_cast<int>(end.remainingTime())))
        return false;
    socket.write(message);
    char answer = 0;
    return socket.waitForReadyRead(static_cast<int>(end.remainingTime())) &&
           socket.getChar(&answer) && answer == meeting::Taken;
}

} // namespace

HandOver handOver(InstanceLock& place, const QString& name, int patienceMs)
{
    const QByteArray message = meeting::messageOf(meeting::Kind::File, nameForOtherInstance(name));
    const QDeadlineTimer end(patienceMs);
    do {
        if (!message.isEmpty() && isTaken(place.serverName(), message, end))
            return HandOver::Delivered;
        if (place.take() != FileLock::Result::HeldByAnother)
            return HandOver::NobodyServes;
        if (message.isEmpty())
            break;
        QThread::msleep(PauseMs);
    } while (!end.hasExpired());
    return HandOver::Unanswered;
}

QString nameForOtherInstance(const QString& name)
{
    // Kept: a name that is nothing but the ending is no movie for the instance that runs, which
    // it would be behind a folder.
    if (name.isEmpty() || name == ".pvm"_L1)
        return name;
    return QDir::current().absoluteFilePath(name);
}
