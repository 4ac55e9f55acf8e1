#include "support/RunningProgram.h"
#include "support/Paths.h"
#include "support/ScratchFile.h"
#include "support/Waiting.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <csignal>
#include <ctime>
#include <unistd.h>

namespace {

constexpr uid_t OrdinaryUser = 65534;

void giveToOrdinaryUser(const QString& path)
{
    if (geteuid() == 0)
        QCOMPARE(chown(path.toLocal8Bit().constData(), OrdinaryUser, OrdinaryUser), 0);
}

void kill(QProcess& one)
{
    if (one.state() == QProcess::NotRunning)
        return;
    one.kill();
    one.waitForFinished(HangMs);
}

} // namespace

RunningProgram::RunningProgram()
{
    QVERIFY(QDir(m_scratch.path()).mkpath("program") && QDir(m_scratch.path()).mkpath("home"));
    QVERIFY(QFile::copy(pevoraProgram(), program("pevora")));
    for (const QString& one : {m_scratch.path(), program(), home(), program("pevora")})
        giveToOrdinaryUser(one);
    // A runtime folder that others can look into is none.
    QVERIFY(QFile::setPermissions(home(), QFile::Permissions(0x7700)));
    environment.insert("HOME", home());
    environment.insert("XDG_RUNTIME_DIR", home());
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME",
                             "DBUS_SESSION_BUS_ADDRESS", "SESSION_MANAGER"})
        environment.remove(name);
}

RunningProgram::~RunningProgram()
{
    kill(process);
    for (const auto& one : m_others)
        kill(*one);
    // The folder's own clean-up needs to reach into it.
    QFile::setPermissions(program(), QFile::Permissions(0x7777));
}

void RunningProgram::write(const QString& name, const QByteArray& content) const
{
    writeFile(program(name), content);
    giveToOrdinaryUser(program(name));
}

QByteArray RunningProgram::read(const QString& name) const
{
    QFile file(program(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool RunningProgram::start(const QStringList& arguments)
{
    launch(process, arguments);
    return waitFor([this] {
        window = windowOf(process);
        return !window.isEmpty();
    });
}

QProcess& RunningProgram::startAnother(const QStringList& arguments, const QString& workingFolder)
{
    m_others.push_back(std::make_unique<QProcess>());
    QProcess& one = *m_others.back();
    one.setWorkingDirectory(workingFolder);
    launch(one, arguments);
    return one;
}

void RunningProgram::launch(QProcess& one, const QStringList& arguments) const
{
    QStringList words;
    if (geteuid() == 0)
        words << "setpriv" << QString("--reuid=%1").arg(OrdinaryUser)
              << QString("--regid=%1").arg(OrdinaryUser) << "--clear-groups";
    words << program("pevora") << arguments;
    one.setProcessEnvironment(environment);
    one.start(words.takeFirst(), words);
}

bool RunningProgram::ends(const QProcess& one)
{
    return waitFor([&] { return one.state() == QProcess::NotRunning; });
}

QByteArray RunningProgram::ended(QProcess& one)
{
    if (!ends(one))
        return "it does not end";
    if (one.exitStatus() != QProcess::NormalExit)
        return "it crashed";
    return QByteArray::number(one.exitCode());
}

void RunningProgram::terminate(const QProcess& one)
{
    ::kill(pid_t(one.processId()), SIGTERM);
}

double RunningProgram::secondsUsed() const
{
    // The figures in /proc count by a hundredth of a second, which is a third of a start.
    clockid_t clock{};
    timespec used{};
    if (clock_getcpuclockid(pid_t(process.processId()), &clock) != 0 ||
        clock_gettime(clock, &used) != 0)
        return -1;
    return double(used.tv_sec) + double(used.tv_nsec) / 1e9;
}

QString RunningProgram::tell(const QString& command, const QStringList& arguments)
{
    QProcess tool;
    tool.start(command, arguments);
    tool.waitForFinished(HangMs);
    return QString::fromUtf8(tool.readAllStandardOutput());
}

QString RunningProgram::property(const QString& name) const
{
    return tell("xprop", {"-id", window, name}).trimmed();
}

QString RunningProgram::windowOf(const QProcess& one)
{
    const QString found = tell("xdotool", {"search", "--all", "--onlyvisible", "--pid",
                                           QString::number(one.processId()), "--name", "^Pevora$"});
    return found.section('\n', 0, 0);
}

bool RunningProgram::press(const QStringList& keys) const
{
    const bool hasKeyboard = waitFor([this] {
        tell("xdotool", {"windowactivate", "--sync", window});
        return tell("xdotool", {"getwindowfocus"}).trimmed() == window;
    });
    if (hasKeyboard)
        tell("xdotool", QStringList{"key", "--clearmodifiers"} + keys);
    return hasKeyboard;
}

QRect RunningProgram::place() const
{
    const QString about = tell("xwininfo", {"-id", window});
    const auto number = [&](const QString& name) {
        const QRegularExpression line(name + ":\\s*(-?\\d+)");
        return line.match(about).captured(1).toInt();
    };
    return {number("Absolute upper-left X"), number("Absolute upper-left Y"), number("Width"),
            number("Height")};
}

QString RunningProgram::pathOf(const QString& folder, const QString& name) const
{
    const QString path = m_scratch.filePath(folder);
    return name.isEmpty() ? path : path + '/' + name;
}
