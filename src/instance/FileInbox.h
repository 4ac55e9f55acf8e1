#pragma once

#include "instance/CommandLine.h"

#include <QObject>
#include <QStringList>

class Timer;

/// The queue of the files that other instances hand over. It only keeps them: its owner takes the
/// next one when FileWaits says so and nothing that takes long runs.
class FileInbox : public QObject
{
    Q_OBJECT

public:
    explicit FileInbox(QObject* parent = nullptr);

    /// Queues the file `name`, also where it is the one before. False, and nothing happens, where
    /// MaxWaiting are waiting or after close().
    bool receive(const QString& name);

    /// Lets FileWaits come again where a file waits: the owner took none then, and can now.
    void wake();

    /// Takes the next file out of the queue, of kind None where its name is empty or none waits.
    /// For those behind it FileWaits comes in an event of its own: in between, whoever hands the
    /// next one over is answered.
    CommandLineFile takeNext();

    /// For the end of the program: receives no more, and gives the lists that still wait, whose
    /// senders are gone, so that they are saved with the rest. Movies are forgotten.
    QStringList close();

    static constexpr qsizetype MaxWaiting = 1'000;

signals:
    /// A file came.
    void Received(const QString& name);
    /// takeNext() has one.
    void FileWaits();

private:
    QStringList m_waiting;
    Timer* m_tmrTurn;
    bool m_closed = false;
};
