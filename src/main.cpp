#include "instance/CommandLine.h"
#include "instance/InstanceClient.h"
#include "instance/InstanceLock.h"
#include "instance/InstanceServer.h"
#include "network/TcpClient.h"
#include "platform/TerminationSignal.h"
#include "shared/AppFolder.h"
#include "shell/ProgramStyle.h"
#include "shell/frmMain.h"

#include <QApplication>
#include <QLoggingCategory>

#include <cstdio>
#include <cstdlib>
#include <optional>

namespace {

/// What the start with arguments leaves for the start with a window.
struct Start
{
    QString commandLine;
    bool isRestart = false;
    /// Held from the moment that no server was found.
    std::optional<InstanceLock> lock;
};

void nameProgram()
{
    QCoreApplication::setApplicationName(QStringLiteral("Pevora"));
}

int print(const QString& text)
{
    const bool printed = std::fputs(text.toUtf8().constData(), stdout) >= 0;
    return std::fflush(stdout) == 0 && printed ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// All that needs no window, and so no display. The exit status where nothing else is to do.
std::optional<int> startWithoutWindow(int& argc, char* argv[], Start& start)
{
    const QCoreApplication application(argc, argv);
    nameProgram();
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (const auto answer = answerOnTerminal(arguments))
        return print(*answer);
    start.isRestart = isStartedBySession(arguments);
    start.commandLine = commandLineOf(arguments);
    if (start.commandLine.isEmpty())
        return {};
    start.lock.emplace(applicationFolder());
    const auto result =
        InstanceClient(*start.lock).handOver(readCommandLine(start.commandLine).name);
    if (result == InstanceClient::Result::NoServer)
        return {};
    return EXIT_SUCCESS;
}

/// The program with its window, until that has gone. Returns the exit status.
int runWindow(Start& start)
{
    const QString folder = applicationFolder();
    if (!start.lock)
        start.lock.emplace(folder);
    frmMain window({folder, QApplication::applicationDirPath()}, start.commandLine);
    const TerminationSignal termination;
    QObject::connect(&termination, &TerminationSignal::Received, &window, &frmMain::shutDown);
    window.show();
    const InstanceServer server(*start.lock, window.inbox());
    return QApplication::exec();
}

int runApplication(int& argc, char* argv[], Start& start)
{
    QApplication application(argc, argv);
    nameProgram();
    QApplication::setStyle(new ProgramStyle);
    QApplication::setDesktopFileName(QStringLiteral("pevora"));
    QApplication::setQuitOnLastWindowClosed(false);
    // A camera that sends no picture is told on the status line, not on the terminal.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));

    const int status = runWindow(start);
    // Qt waits for look-ups when it hears that the application goes. What else it does then, as
    // handing the clipboard on, does not hang on this signal.
    if (TcpClient::hasLeftLookUp())
        QObject::disconnect(&application, &QObject::destroyed, nullptr, nullptr);
    return status;
}

} // namespace

int main(int argc, char* argv[])
{
    Start start;
    if (argc > 1) {
        if (const auto status = startWithoutWindow(argc, argv, start))
            return *status;
    }
    // Qt would take its own options out of what is a file name.
    int argumentsForQt = start.isRestart ? argc : qMin(argc, 1);
    const int status = runApplication(argumentsForQt, argv, start);
    // Qt's library would wait for look-ups once more: a name server that does not answer would hold
    // the process for a quarter of a minute. All windows have gone, and all files are written.
    if (TcpClient::hasLeftLookUp()) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
