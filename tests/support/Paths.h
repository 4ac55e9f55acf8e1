#pragma once

#include <QString>

/// A file or folder of the project, named from its root: "languages/de".
QString sourcePath(const QString& relative);

/// The program as this build made it, the library that it is of, and the demo camera.
QString pevoraProgram();
QString coreLibrary();
QString demoCameraProgram();

/// How each source was compiled: the build's compile_commands.json.
QString compileCommands();

/// Whether this build has checked copies (cmake/Hardening.cmake).
bool isFortified();

/// The library with which no look-up of a name ever ends (support/silent-resolver).
QString silentResolver();
