#pragma once

#include <QString>

/// What the program was asked to open.
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
