#include "support/OtherProgram.h"

#include "support/Waiting.h"

#include <QProcess>

QByteArray printedBy(QStringList words, const QByteArray& input)
{
    QProcess process;
    const QString program = words.takeFirst();
    process.start(program, words);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(HangMs)) {
        process.kill();
        process.waitForFinished(HangMs);
        return "failed: " + program.toUtf8() + ", " + process.errorString().toUtf8();
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return "failed: " + program.toUtf8() + ", " + process.readAllStandardError();
    return process.readAllStandardOutput().trimmed();
}
