#include "Process.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double milliseconds(const timespec& time)
{
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

double milliseconds(const timeval& time)
{
    return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
}

} // namespace

double nowMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return milliseconds(now);
}

Process::Process(const QStringList& command)
{
    std::vector<QByteArray> words;
    for (const QString& word : command)
        words.push_back(QFile::encodeName(word));
    std::vector<char*> arguments;
    for (QByteArray& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    m_startedMs = nowMs();
    if (posix_spawnp(&m_pid, arguments[0], &actions, nullptr, arguments.data(), environ) != 0)
        m_pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    m_output = ends[0];
}

Process::~Process()
{
    end();
    if (m_output >= 0)
        close(m_output);
}

double Process::cpuMs() const
{
    clockid_t clock{};
    timespec used{};
    if (m_pid <= 0 || clock_getcpuclockid(m_pid, &clock) != 0 || clock_gettime(clock, &used) != 0)
        return 0;
    return milliseconds(used);
}

double Process::residentMegabytes() const
{
    QFile status(QStringLiteral("/proc/%1/status").arg(m_pid));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).chopped(2).trimmed().toDouble() * 1024 / 1e6;
    }
    return 0;
}

QByteArray Process::output(qsizetype bytes)
{
    QByteArray all(bytes, Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < bytes) {
        const ssize_t got = read(m_output, all.data() + filled, size_t(bytes - filled));
        if (got <= 0 && errno != EINTR)
            break;
        filled += std::max<ssize_t>(got, 0);
        if (got == 0)
            break;
    }
    all.truncate(filled);
    return all;
}

Cost Process::wait()
{
    Cost cost;
    int status = 0;
    rusage usage{};
    while (m_pid > 0 && wait4(m_pid, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    cost.succeeded = m_pid > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    cost.cpuMs = milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
    cost.wallMs = nowMs() - m_startedMs;
    m_pid = -1;
    return cost;
}

void Process::end()
{
    if (m_pid <= 0)
        return;
    kill(m_pid, SIGTERM);
    constexpr double patienceMs = 2000;
    for (const double asked = nowMs(); nowMs() < asked + patienceMs;) {
        if (waitpid(m_pid, nullptr, WNOHANG) != 0) {
            m_pid = -1;
            return;
        }
        usleep(1000);
    }
    kill(m_pid, SIGKILL);
    wait();
}

Cost costOf(const QStringList& command)
{
    Process process(command);
    process.output(0);
    return process.wait();
}
