#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// A file that the program was asked to open, by its command line or by another instance.
struct CommandLineFile
{
    enum class Kind { None, Movie, CameraList };
    Kind kind = Kind::None;
    QString name;
};

/// Reads the command line: one file name, without a pair of double quotes around all of it. A
/// name whose last four characters are ".pvm" in whatever letter case is a movie, any other a
/// camera list.
CommandLineFile readCommandLine(const QString& commandLine);

/// The command line that these arguments, without the program's own name, are: the words of one
/// file name. Empty where the desktop starts the program again ("-session" and a number).
QString commandLineOf(const QStringList& arguments);

/// Whether the desktop's session manager starts the program again as it was.
bool isStartedBySession(const QStringList& arguments);

/// What the program says on the terminal, and then ends: asked by "--help" or "--version" as its
/// first argument. Nothing for whatever else, which is a file name.
std::optional<QString> answerOnTerminal(const QStringList& arguments);
