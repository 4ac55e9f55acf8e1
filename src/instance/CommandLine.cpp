#include "instance/CommandLine.h"

#include "shared/BuildSettings.h"

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

QString commandLineOf(const QStringList& arguments)
{
    return isStartedBySession(arguments) ? QString() : arguments.join(u' ');
}

bool isStartedBySession(const QStringList& arguments)
{
    return arguments.size() == 2 && arguments.first() == "-session"_L1;
}

std::optional<QString> answerOnTerminal(const QStringList& arguments)
{
    const QString asked = arguments.value(0);
    if (asked == "--version"_L1)
        return "Pevora "_L1 + programVersion() + u'\n';
    if (asked != "--help"_L1)
        return {};
    return uR"(Usage: pevora [FILE]
Watches still images of web cameras.

  FILE        a movie (its name ends in .pvm), or a list of cameras to add to
              one's own. It opens in the Pevora that runs, if there is one.
  --help      prints this text
  --version   prints the version

Anything else is the name of a file. One that is called --help is ./--help.
)"_s;
}
