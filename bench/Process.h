#pragma once

#include <QByteArray>
#include <QStringList>

#include <sys/types.h>

/// What a program that has ended took of the machine, its own children included.
struct Cost
{
    double cpuMs = 0;  ///< user and system time
    double wallMs = 0; ///< from before its start to its end
    bool succeeded = false;
};

/// A program under measurement. It is ended and waited for when this goes.
class Process
{
public:
    /// Starts `command` (program and arguments; found along PATH). Where that is not possible,
    /// isRunning() is false.
    explicit Process(const QStringList& command);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    bool isRunning() const { return m_pid > 0; }
    /// User and system time so far in milliseconds, to the nanosecond; ended threads included.
    double cpuMs() const;
    /// Memory that is resident now, in megabytes (of 1,000,000 bytes).
    double residentMegabytes() const;

    /// Everything written to standard output up to its end, of at most `bytes`.
    QByteArray output(qsizetype bytes = 4096);
    /// Waits for the end.
    Cost wait();
    /// Asks it to end, so that it can tidy up, and after two seconds ends it.
    void end();

private:
    pid_t m_pid = -1;
    int m_output = -1;
    double m_startedMs = 0;
};

/// Runs `command` to its end; its output is dropped.
Cost costOf(const QStringList& command);

/// Milliseconds of the clock that only goes forward.
double nowMs();
