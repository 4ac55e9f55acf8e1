#include "support/OtherProgram.h"

#include <QProcess>

QByteArray printedBy(QStringList words, const QByteArray& input)
{
    constexpr int minute = 60'000;
    QProcess process;
    const QString program = words.takeFirst();
    process.start(program, words);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(minute)) {
        process.kill();
        process.waitForFinished();
        return "failed: " + program.toUtf8() + ", " + process.errorString().toUtf8();
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return "failed: " + program.toUtf8() + ", " + process.readAllStandardError();
    return process.readAllStandardOutput().trimmed();
}
