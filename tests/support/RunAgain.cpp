#include "support/RunAgain.h"

#include "support/Waiting.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

namespace {

constexpr auto Variable = "PEVORA_TEST_RUNS_AGAIN";

/// Runs `words`; returns `success` where it ended with 0, else what it printed.
QByteArray run(QStringList words, const QByteArray& success, const QString& scratch = {})
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(Variable, "1");
    if (!scratch.isEmpty())
        environment.insert("TMPDIR", scratch);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    const QString program = words.takeFirst();
    process.start(program, words);
    if (!process.waitForFinished(HangMs)) {
        process.kill();
        process.waitForFinished(HangMs);
        return program.toUtf8() + ": " + process.errorString().toUtf8() + process.readAll();
    }
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return success;
    const QByteArray printed = program.toUtf8() + " failed: " + process.readAll();
    qWarning("%s", printed.constData()); // a comparison shows the first few words only
    return printed;
}

QByteArray runAgain(const QStringList& before)
{
    // The build folder may be out of an ordinary user's reach.
    QTemporaryDir folder;
    const QString copy = folder.filePath("test");
    if (!QFile::copy(QCoreApplication::applicationFilePath(), copy))
        return "no copy of the test program";
    const auto forAll = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup |
                        QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    QFile::setPermissions(folder.path(), forAll);
    QFile::setPermissions(copy, forAll);
    // Its temporary folders go with this one: it cannot remove one that it mounted a disk on.
    const QString scratch = folder.filePath("scratch");
    if (!QDir().mkdir(scratch))
        return "no scratch folder";
    QFile::setPermissions(scratch, forAll | QFile::WriteGroup | QFile::WriteOther);
    QString what = QString::fromLatin1(QTest::currentTestFunction());
    if (const char* row = QTest::currentDataTag())
        what += ':' + QString::fromUtf8(row);
    return run(before + QStringList{copy, what}, "passed", scratch);
}

/// Runs the current test in another process; false in that one.
bool ranAgain(const QStringList& before)
{
    if (runsAgain())
        return false;
    [&] { QCOMPARE(runAgain(before), "passed"); }();
    return true;
}

} // namespace

bool runsAgain()
{
    return qEnvironmentVariableIsSet(Variable);
}

bool ranAsOrdinaryUser()
{
    QStringList before;
    if (geteuid() == 0)
        before = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
    return ranAgain(before);
}

bool ranWithOwnMounts()
{
    QStringList before = {"unshare", "--mount"};
    if (geteuid() != 0)
        before << "--user"
               << "--map-root-user";
    return ranAgain(before);
}

QByteArray mountSmallDisk(const QString& folder, int kilobytes)
{
    return run({"mount", "-t", "tmpfs", "-o", QString("size=%1k").arg(kilobytes), "tmpfs", folder},
               "mounted");
}

QByteArray mountCoarseClock(const QString& folder)
{
    return run({"mount", "-t", "ramfs", "ramfs", folder}, "mounted");
}
