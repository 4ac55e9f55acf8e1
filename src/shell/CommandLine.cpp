#include "shell/CommandLine.h"

using namespace Qt::Literals::StringLiterals;

CommandLineFile readCommandLine(const QString& commandLine)
{
    if (commandLine.isEmpty())
        return {};
    QString name = commandLine;
    if (name.size() >= 2 && name.startsWith(u'"') && name.endsWith(u'"'))
        name = name.mid(1, name.size() - 2);
    const bool isMovie = name.right(4).toLower() == ".pvm"_L1;
    return {isMovie ? CommandLineFile::Kind::Movie : CommandLineFile::Kind::CameraList, name};
}
