#include "support/ChildCost.h"

#include "support/Waiting.h"

#include <QCoreApplication>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double seconds(const timeval& time)
{
    return double(time.tv_sec) + double(time.tv_usec) / 1e6;
}

} // namespace

ChildCost costOfChild(const QStringList& arguments)
{
    QByteArrayList words{QCoreApplication::applicationFilePath().toLocal8Bit()};
    for (const QString& argument : arguments)
        words += argument.toLocal8Bit();
    QList<char*> pointers;
    for (QByteArray& word : words)
        pointers += word.data();
    pointers += nullptr;

    // A mere copy of this process would lack the threads in which Qt scales images.
    const pid_t child = fork();
    if (child == 0) {
        alarm(HangMs / 1000);
        execv(pointers.first(), pointers.data());
        _exit(127);
    }
    ChildCost cost;
    int status = 0;
    rusage used{};
    if (child < 0 || wait4(child, &status, 0, &used) != child)
        return cost;
    cost.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    cost.seconds = seconds(used.ru_utime) + seconds(used.ru_stime);
    cost.peakMegabytes = double(used.ru_maxrss) * 1024 / 1e6;
    return cost;
}
